#include "AirableConfigImpl.h"

#include <QSet>
#include <gtest/gtest.h>

TEST(Config, newConfigurationHasItsDefaults)
{
    auto config = airable::AirableConfig::create();
    EXPECT_EQ(config->locale(), QStringLiteral("en-US"));
    EXPECT_EQ(int(config->bitrate()), 10000000);
    EXPECT_TRUE(config->baseUrl().isEmpty());
    EXPECT_TRUE(config->deviceId().isEmpty());
    EXPECT_TRUE(config->deviceName().isEmpty());
    EXPECT_TRUE(config->version().isEmpty());
    EXPECT_TRUE(config->secret().isEmpty());
    EXPECT_TRUE(config->setPageSize(25));
    EXPECT_EQ(config->pageSize(), 25);
}

TEST(Config, saltsHaveSixteenCharactersOfTheAlphabetOrZero)
{
    QString const alphabet = QStringLiteral("0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
    auto config = airable::AirableConfig::create();
    int zeros = 0;
    for (int i = 0; i < 2000; ++i) {
        QString const salt = config->generateSalt();
        ASSERT_EQ(salt.size(), 16);
        for (QChar c : salt) {
            ASSERT_TRUE(alphabet.contains(c) || c == QChar(0)) << int(c.unicode());
            zeros += c == QChar(0);
        }
    }
    // One draw in 63 is the terminating zero: about 500 of 32000.
    EXPECT_GT(zeros, 250);
    EXPECT_LT(zeros, 800);
}

TEST(Config, saltsOfTheSameSecondDiffer)
{
    auto config = airable::AirableConfig::create();
    QSet<QString> salts;
    for (int i = 0; i < 100; ++i)
        salts.insert(config->generateSalt());
    EXPECT_EQ(salts.size(), 100);
}
