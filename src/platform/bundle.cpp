#include "platform/bundle.hpp"

#include "platform/installation.hpp"

#include <cstdlib>
#include <system_error>

namespace lunoval {

namespace fs = std::filesystem;

std::optional<fs::path> Bundle::url(std::string_view name, std::string_view extension,
                                    std::string_view subdirectory) const {
    auto path = root / subdirectory / (std::string(name) + "." + std::string(extension));
    std::error_code error;
    if (!fs::is_regular_file(path, error)) return std::nullopt;
    return path;
}

BundleLocator BundleLocator::standard() {
    BundleLocator locator;
    if (const char* paths = std::getenv("LUNOVAL_RESOURCE_PATH")) {
        std::string_view rest = paths;
        while (!rest.empty()) {
            const auto colon = rest.find(':');
            const auto entry = rest.substr(0, colon);
            if (!entry.empty()) locator.searchRoots.emplace_back(entry);
            rest = colon == std::string_view::npos ? std::string_view{} : rest.substr(colon + 1);
        }
    }
    locator.searchRoots.push_back(installation::dataDirectory());
    return locator;
}

std::optional<Bundle> BundleLocator::bundle(std::string_view identifier) const {
    for (const auto& searchRoot : searchRoots) {
        auto root = searchRoot / identifier;
        std::error_code error;
        if (fs::is_directory(root, error)) return Bundle{std::string(identifier), root};
    }
    return std::nullopt;
}

}  // namespace lunoval
