# One static library per folder under src/, which sees only its own folder and the folders it
# may depend on: each gets an include root of its own, ${CMAKE_BINARY_DIR}/include/<folder>/,
# holding links to those folders alone, so an include that points the wrong way does not
# compile ("No such file or directory") instead of quietly adding an arrow.
#
#   lunoval_folder(<folder> SOURCES <files...> DEPENDS <folders...> [LIBS <external targets...>])
#
# DEPENDS names the folders this one includes from directly; what they depend on is visible
# too, as their headers include it. They are linked PRIVATE: a dependent reaches them only
# through the folders it names itself.
function(lunoval_folder folder)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LIBS" ${ARGN})
  set(target lunoval_${folder})
  add_library(${target} STATIC ${ARG_SOURCES})

  set(closure ${folder})
  set(libraries ${ARG_LIBS})
  foreach(dependency IN LISTS ARG_DEPENDS)
    if(NOT TARGET lunoval_${dependency})
      message(FATAL_ERROR "${folder} depends on ${dependency}, which is not defined yet")
    endif()
    get_property(reached GLOBAL PROPERTY LUNOVAL_REACHES_${dependency})
    get_property(reachedLibraries GLOBAL PROPERTY LUNOVAL_LIBRARIES_${dependency})
    list(APPEND closure ${reached})
    list(APPEND libraries ${reachedLibraries})
  endforeach()
  list(REMOVE_DUPLICATES closure)
  list(REMOVE_DUPLICATES libraries)
  set_property(GLOBAL PROPERTY LUNOVAL_REACHES_${folder} ${closure})
  set_property(GLOBAL PROPERTY LUNOVAL_LIBRARIES_${folder} ${libraries})

  set(root ${CMAKE_BINARY_DIR}/include/${folder})
  file(REMOVE_RECURSE ${root})
  file(MAKE_DIRECTORY ${root})
  foreach(reached IN LISTS closure)
    file(CREATE_LINK ${PROJECT_SOURCE_DIR}/src/${reached} ${root}/${reached} SYMBOLIC)
  endforeach()

  # A folder library compiles against its own root alone; a program or test linking it gets
  # the root too. The libraries of every reached folder are public, as the reached headers may
  # include theirs (Cairo's from ui/).
  set_target_properties(${target} PROPERTIES LUNOVAL_FOLDER ${folder})
  target_include_directories(${target}
    PRIVATE ${root}
    INTERFACE $<$<NOT:$<BOOL:$<TARGET_PROPERTY:LUNOVAL_FOLDER>>>:${root}>)
  list(TRANSFORM ARG_DEPENDS PREPEND lunoval_)
  target_link_libraries(${target} PRIVATE ${ARG_DEPENDS} PUBLIC ${libraries})
endfunction()
