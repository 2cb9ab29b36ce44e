// The metadata container: typed entries by tag.
#include <gtest/gtest.h>

#include "IMetadata.h"

namespace {

using NSCam::IMetadata;

// The second update of the floats replaces the first, which was longer.
TEST(Metadata, ReadsOnlyWhatIsThere) {
    constexpr uint32_t kFloats = 1;
    constexpr uint32_t kIntegers = 2;
    constexpr uint32_t kAbsent = 3;
    IMetadata metadata;
    metadata.update(kFloats, IMetadata::IEntry(std::vector<float>{0.5F, 1.5F, 4.5F}));
    metadata.update(kFloats, IMetadata::IEntry(std::vector<float>{2.5F, 3.5F}));
    metadata.update(kIntegers, IMetadata::IEntry(std::vector<int32_t>{7, 8, 9}));
    float number = -1.0F;
    int32_t integer = -1;

    EXPECT_FALSE(IMetadata::getEntry(nullptr, kFloats, number, 0));
    EXPECT_FALSE(IMetadata::getEntry(&metadata, kAbsent, number, 0));
    EXPECT_FALSE(IMetadata::getEntry(&metadata, kFloats, number, 2)) << "beyond the count";
    EXPECT_FALSE(IMetadata::getEntry(&metadata, kIntegers, number, 0)) << "wrong type";
    EXPECT_FALSE(IMetadata::getEntry(&metadata, kFloats, integer, 0)) << "wrong type";
    EXPECT_EQ(number, -1.0F);
    EXPECT_EQ(integer, -1);

    EXPECT_TRUE(IMetadata::getEntry(&metadata, kFloats, number, 1));
    EXPECT_EQ(number, 3.5F);

    auto const entry = metadata.entryFor(kIntegers, 0);
    EXPECT_EQ(entry.count(), 3U);
    EXPECT_EQ(entry.itemAt<int32_t>(2), 9);
    EXPECT_EQ(entry.itemAt<int32_t>(3), 0) << "beyond the count";
    EXPECT_EQ(entry.itemAt<float>(0), 0.0F) << "wrong type";
    EXPECT_EQ(metadata.entryFor(kAbsent, 0).count(), 0U);
}

}  // namespace
