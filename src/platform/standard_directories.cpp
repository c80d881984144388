#include "platform/standard_directories.hpp"

#include <glib.h>

namespace lunoval {

std::filesystem::path homeDirectory() {
    return g_get_home_dir();
}

std::filesystem::path applicationSupportDirectory() {
    return std::filesystem::path(g_get_user_data_dir()) / "lunoval";
}

std::filesystem::path documentsDirectory() {
    if (const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS))
        return documents;
    return homeDirectory() / "Documents";
}

}  // namespace lunoval
