#include "Portable_ReferenceCountedObject.h"

#include <gtest/gtest.h>

namespace {

struct Base : portable::ReferenceCountedObject
{
    typedef portable::SmartPointer<Base> Ptr;
};

struct Derived : Base
{
    explicit Derived(int* destroyed) : destroyed(destroyed) {}
    ~Derived() override { ++*destroyed; }
    int* destroyed;
};

} // namespace

TEST(Ownership, lastReleaseRunsTheMostDerivedDestructor)
{
    int destroyed = 0;
    auto* raw = new Derived(&destroyed);
    EXPECT_EQ(raw->refCount(), 0);
    {
        Base::Ptr a(raw);
        Base::Ptr b = a;
        EXPECT_EQ(raw->refCount(), 2);
        a = Base::Ptr();
        EXPECT_EQ(destroyed, 0);
        portable::SmartPointer<Derived> c = b.dynamicCast<Derived>();
        EXPECT_EQ(c.get(), raw);
    }
    EXPECT_EQ(destroyed, 1);
}

TEST(Ownership, copyingNullTouchesNoCount)
{
    Base::Ptr empty;
    Base::Ptr copy = empty;
    Base::Ptr moved = std::move(copy);
    EXPECT_TRUE(moved.isNull());
    EXPECT_TRUE(empty.dynamicCast<Derived>().isNull());

    int destroyed = 0;
    Base::Ptr held(new Derived(&destroyed));
    held = empty;
    EXPECT_EQ(destroyed, 1);
}

TEST(OwnershipDeathTest, releaseWithoutAReferenceIsFatal)
{
    int destroyed = 0;
    auto* raw = new Derived(&destroyed);
    EXPECT_DEATH(raw->release(), "mRefCount > 0");
    delete raw;
}
