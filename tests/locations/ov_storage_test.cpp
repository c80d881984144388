#include "locations/ov_storage.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include "temp_folder.hpp"

#include "platform/files.hpp"

namespace lunoval {
namespace {

namespace fs = std::filesystem;

class PrivateStore : public ::testing::Test {
  protected:
    [[nodiscard]] OVStorage open() const { return {local_, legacy_}; }

    static void write(const fs::path& file, const PropertyValue& entries) {
        writeFileAtomically(file, propertyListXml(entries));
    }

    testing::TempFolder temp_{"lunoval-store"};
    fs::path local_ = temp_.path() / "support" / std::string(OVStorage::kFileName);
    fs::path legacy_ = temp_.path() / std::string(OVStorage::kFileName);
};

TEST_F(PrivateStore, TakesOverTheLegacyFileOnceAndLeavesItAlone) {
    write(legacy_, {{"scale", 2.0}});
    const auto legacyBytes = readWholeFile(legacy_);
    fs::create_directories(local_.parent_path());
    EXPECT_EQ(open().objectForKey("scale"), 2.0);
    EXPECT_TRUE(fs::exists(local_));
    EXPECT_EQ(readWholeFile(legacy_), legacyBytes);

    write(legacy_, {{"scale", 3.0}});
    EXPECT_EQ(open().objectForKey("scale"), 2.0);  // the local file shadows it now
}

TEST_F(PrivateStore, KeepsOnlyWhatWasSynchronizedInEveryPropertyListType) {
    fs::create_directories(local_.parent_path());
    const PropertyValue values{
        {"text", "Zürich"},
        {"real", 0.1},
        {"integer", -42},
        {"flag", true},
        {"bytes", PropertyValue::binary({0, 255, 10})},
        {"nested", {{"list", {1, "two", 3.5}}, {"empty", PropertyValue::object()}}},
    };
    {
        auto store = open();
        for (const auto& [key, value] : values.items()) store.setObject(value, key);
        store.synchronize();
        store.setObject("lost", "unsynchronized");
    }
    const auto store = open();
    EXPECT_EQ(store.entries(), values);
    EXPECT_FALSE(store.objectForKey("unsynchronized"));
}

TEST_F(PrivateStore, AFileThatDoesNotReadIsKeptAsideBeforeTheFirstWrite) {
    fs::create_directories(local_.parent_path());
    std::ofstream(local_) << "not a property list";
    auto store = open();
    EXPECT_TRUE(store.entries().empty());
    store.setObject(1.5, "scale");
    store.synchronize();
    EXPECT_EQ(open().objectForKey("scale"), 1.5);
    std::size_t keptAside = 0;
    for (const auto& entry : fs::directory_iterator(local_.parent_path())) {
        if (entry.path().filename().string().find(".corrupt-") != std::string::npos) {
            EXPECT_EQ(readWholeFile(entry.path()), "not a property list");
            ++keptAside;
        }
    }
    EXPECT_EQ(keptAside, 1U);
}

}  // namespace
}  // namespace lunoval
