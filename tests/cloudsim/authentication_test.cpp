#include "auth.h"
#include "cloudserver.h"
#include "device.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <algorithm>
#include <cstdlib>

#include <gtest/gtest.h>

namespace {

class Authentication : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString(); }

    cloudsim::CloudServer cloud;
};

TEST(AuthenticationFormulas, signatureAndHeaderAreTheDevicesHashes)
{
    EXPECT_EQ(cloudsim::authenticationSignature("dev", "en-US", "salt", "secret"),
              QCryptographicHash::hash("deven-USsaltsecret", QCryptographicHash::Md5).toHex());

    QByteArray const digest = QCryptographicHash::hash("abcs17", QCryptographicHash::Md5).toHex();
    EXPECT_EQ(cloudsim::authorizationValue("abc", "s", 17), "Basic " + QString::fromLatin1(("abc:" + digest).toBase64()));
}

TEST_F(Authentication, correctSignatureGetsATokenWithTheCloudsTime)
{
    Device device(cloud);
    Device::Reply const reply =
        device.authenticateWith("s4Lt", cloudsim::authenticationSignature("00:11:22:33:44:55", "en-US", "s4Lt", cloud.secret()));

    EXPECT_EQ(reply.string("/id/1"), "accesstoken");
    EXPECT_EQ(reply.string("/token").size(), 32u);
    ASSERT_TRUE(reply.json["time"].IsInt64());
    EXPECT_NEAR(reply.json["time"].GetInt64(), QDateTime::currentMSecsSinceEpoch() / 1000, 2);
}

TEST_F(Authentication, wrongSignatureGetsAnErrorObject)
{
    Device device(cloud);
    QByteArray const otherSecret = cloudsim::authenticationSignature("00:11:22:33:44:55", "en-US", "s4Lt", "guess");

    Device::Reply const reply = device.authenticateWith("s4Lt", QString::fromLatin1(otherSecret));

    EXPECT_EQ(reply.status, 200);
    EXPECT_EQ(reply.string("/id/1"), "error");
    EXPECT_TRUE(reply.string("/token").empty());
}

TEST_F(Authentication, saltWithAZeroCharacterIsHashedWithIt)
{
    Device device(cloud);
    EXPECT_TRUE(device.authenticate(QString("ab") + QChar(0) + "cd"));
}

TEST_F(Authentication, requestsWithoutValidHeaderGetTheAuthenticationError)
{
    Device device(cloud);
    EXPECT_TRUE(device.get("/").isErrorItem("authentication"));
    EXPECT_TRUE(device.getRaw("/", "Bearer nothing").isErrorItem("authentication"));
    EXPECT_TRUE(device.getRaw("/", "Basic bm90b2tlbjp4eHg=").isErrorItem("authentication"));

    ASSERT_TRUE(device.authenticate());
    std::string const other = cloudsim::authorizationValue(device.token(), "not the secret", 17).toStdString();
    EXPECT_TRUE(device.getRaw("/", other.c_str()).isErrorItem("authentication"));
}

TEST_F(Authentication, headerIsAcceptedWithinAFewSecondsOfClockDifference)
{
    Device device(cloud);
    ASSERT_TRUE(device.authenticate());

    EXPECT_EQ(device.get("/").string("/id/1"), "listing");
    EXPECT_EQ(device.get("/", -3).string("/id/1"), "listing");
    EXPECT_EQ(device.get("/", 3).string("/id/1"), "listing");
    EXPECT_TRUE(device.get("/", -30).isErrorItem("authentication"));
    EXPECT_TRUE(device.get("/", 30).isErrorItem("authentication"));
}

TEST_F(Authentication, tokenExpiresAfterItsLifetime)
{
    Device device(cloud);
    cloud.setTokenLifetime(0);
    ASSERT_TRUE(device.authenticate());

    EXPECT_TRUE(device.get("/").isErrorItem("authentication"));

    cloud.setTokenLifetime(60);
    EXPECT_EQ(device.get("/").string("/id/1"), "listing");
}

TEST_F(Authentication, expiredTokensAreRefusedUntilTheDeviceAuthenticatesAgain)
{
    Device device(cloud);
    ASSERT_TRUE(device.authenticate());
    cloud.expireTokens();

    EXPECT_TRUE(device.get("/").isErrorItem("authentication"));
    ASSERT_TRUE(device.authenticate());
    EXPECT_EQ(device.get("/").string("/id/1"), "listing");
}

TEST_F(Authentication, expiredTokenFaultHitsOnlyItsRouteAndItsCount)
{
    Device device(cloud);
    ASSERT_TRUE(device.authenticate());
    cloud.setFault("/deezer", cloudsim::Fault::expiredToken(1));

    EXPECT_EQ(device.get("/").string("/id/1"), "listing");
    EXPECT_TRUE(device.get("/deezer").isErrorItem("authentication"));
    ASSERT_TRUE(device.authenticate());
    EXPECT_EQ(device.get("/deezer").string("/id/1"), "form");
}

TEST_F(Authentication, imagesAndMediaNeedNoToken)
{
    Device device(cloud);
    EXPECT_EQ(device.get("/images/r1001.svg").status, 200);
    EXPECT_EQ(device.get("/media/r1001-128.mp3").body.substr(0, 4), "RIFF");
}

// A person hears that a stream plays, and that another one took its place.
TEST_F(Authentication, eachStreamSoundsATone)
{
    Device device(cloud);
    std::string const one = device.get("/media/r1001-128.mp3").body;
    std::string const other = device.get("/media/dz-fl2.mp3").body;
    ASSERT_GT(one.size(), 44u);
    EXPECT_EQ(one, device.get("/media/r1001-128.mp3").body);
    EXPECT_NE(one, other);
    auto const loudest = [](std::string const& wave) {
        int most = 0;
        for (std::size_t i = 44; i < wave.size(); ++i)
            most = std::max(most, std::abs(static_cast<unsigned char>(wave[i]) - 128));
        return most;
    };
    EXPECT_GT(loudest(one), 20);
}

} // namespace
