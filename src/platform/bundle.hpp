#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lunoval {

// A resource bundle: a folder named by the bundle identifier under one of the search roots.
struct Bundle {
    std::string identifier;
    std::filesystem::path root;

    // The regular file `<root>/<subdirectory>/<name>.<extension>`, if it exists.
    [[nodiscard]] std::optional<std::filesystem::path> url(std::string_view name,
                                                           std::string_view extension,
                                                           std::string_view subdirectory) const;
};

// Where bundles are looked for, in order.
struct BundleLocator {
    std::vector<std::filesystem::path> searchRoots;

    // $LUNOVAL_RESOURCE_PATH (colon-separated), then the installation's data folder.
    static BundleLocator standard();

    [[nodiscard]] std::optional<Bundle> bundle(std::string_view identifier) const;
};

// The identifiers of the maker's shared framework and of the host app.
inline constexpr std::string_view kFrameworkBundleIdentifier = "com.orvane.Orvane";
inline constexpr std::string_view kHostAppBundleIdentifier = "com.orvane.Lunoval";

}  // namespace lunoval
