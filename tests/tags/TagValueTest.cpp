#include "tags/TagValue.h"

#include "core/CustomData.h"
#include "framework/base/StringArray.h"
#include "framework/base/Time.h"
#include "tests/support/Print.h"

#include <gtest/gtest.h>

TEST(TagValue, PreparesOnlyKindsThatOwnABuffer)
{
    CTagValue value;
    value.SetUInt(5);
    EXPECT_EQ(value.GetDataType(), 0x2u);
    value.InitType(TAGDATA_UINT);
    EXPECT_EQ(value.IsEmpty(), 1);
}
