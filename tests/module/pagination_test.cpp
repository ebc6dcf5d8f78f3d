#include "airablepagination.h"

#include <gtest/gtest.h>

TEST(Pagination, pageUrlsFillEveryPlaceholderAndSpacesBecomeEscapes)
{
    AirablePagination const p(QStringLiteral("http://c/list+of?p=[page]&again=[page]"), QStringLiteral("[page]"), 300);
    EXPECT_EQ(p.getUrlForPage(3), QStringLiteral("http://c/list%20of?p=3&again=3"));
    EXPECT_EQ(p.getUrlForPage(12), QStringLiteral("http://c/list%20of?p=12&again=12"));
    EXPECT_EQ(p.count(), 300);
    EXPECT_EQ(AirablePagination().count(), 0);
}
