# Bash completion for lunoval: the commands, then each command's options as its --help lists them.
_lunoval() {
  local current=${COMP_WORDS[COMP_CWORD]} command="" word
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    [[ $word != -* ]] && { command=$word; break; }
  done
  if [[ -z $command && $current != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(lunoval --help 2>/dev/null |
      awk '/^Subcommands:/ {on = 1; next} on && /^  [a-z]/ {print $1}')" -- "$current")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$(lunoval ${command:+"$command"} --help 2>/dev/null |
    grep -oE -- '--[a-z][a-z-]*' | sort -u)" -- "$current")
}
complete -o default -F _lunoval lunoval
