#include "cloudserver.h"
#include "device.h"

#include <gtest/gtest.h>

namespace {

class Logins : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(cloud.start()) << cloud.errorString().toStdString();
        ASSERT_TRUE(kitchen.authenticate());
        ASSERT_TRUE(hall.authenticate());
    }

    std::string base() const { return cloud.baseUrl().toStdString(); }

    cloudsim::CloudServer cloud;
    Device kitchen{cloud, "AA:00:00:00:00:01"};
    Device hall{cloud, "AA:00:00:00:00:02"};
};

// As the module submits Deezer's form: hidden fields first, then the others.
std::string const kDeezerLogin = "/deezer/login?client=tarn&username=me%40example.com&password=secret&quality=1";

TEST_F(Logins, aServiceAnswersItsLoginFormEverywhereUntilTheDeviceLogsIn)
{
    for (char const* path : {"/deezer", "/deezer/home", "/deezer/albums/dz-al1", "/deezer/streams/dz-al1t1",
                             "/id/deezer/track/dz-al1t1"}) {
        Device::Reply const r = kitchen.get(path);
        EXPECT_EQ(r.string("/id/1") + "/" + r.string("/id/2"), "form/login") << path;
    }
    EXPECT_EQ(kitchen.get("/airable/radios").string("/id/1"), "directory") << "no service that needs a login";

    Device::Reply const home = kitchen.get(kDeezerLogin);
    EXPECT_EQ(home.string("/id/2"), "home");
    EXPECT_EQ(home.string("/url"), base() + "/deezer") << "where the module sends the client after the login";
    EXPECT_EQ(kitchen.get("/deezer").body, home.body);
    EXPECT_EQ(kitchen.get("/deezer/streams/dz-al1t1").string("/id/1"), "redirect");
    EXPECT_EQ(cloud.loggedInUser(kitchen.id(), "deezer"), "me@example.com");

    EXPECT_EQ(hall.get("/deezer").string("/id/1"), "form") << "another device";
    EXPECT_EQ(kitchen.get("/qobuz").string("/id/1"), "form") << "another service";
}

TEST_F(Logins, wrongCredentialsAnswerAMessageBackToTheForm)
{
    Device::Reply const refused = kitchen.get("/qobuz/login?username=me%40example.com&password=Secret");
    EXPECT_EQ(refused.string("/id/1"), "message");
    EXPECT_EQ(refused.string("/description"), "Wrong e-mail or password");
    EXPECT_EQ(refused.string("/buttons/0/url"), base() + "/qobuz");
    EXPECT_EQ(refused.string("/buttons/1/id/2"), "cancel");
    EXPECT_TRUE(cloud.loggedInUser(kitchen.id(), "qobuz").isEmpty());
    EXPECT_EQ(kitchen.get("/qobuz/login?username=nobody%40example.com&password=secret").string("/id/1"), "message");
    EXPECT_EQ(kitchen.get("/qobuz/login").string("/id/1"), "form") << "no credentials at all: the form";

    EXPECT_EQ(kitchen.get("/qobuz/login?username=premium%40example.com&password=secret").string("/id/1"), "listing");
    EXPECT_EQ(cloud.loggedInUser(kitchen.id(), "qobuz"), "premium@example.com");
}

TEST_F(Logins, aLoginOutlivesTheTokenAndEndsWithTheServicesLogout)
{
    ASSERT_EQ(kitchen.get("/napster/login?username=me%40example.com&password=secret").string("/id/1"), "listing");
    cloud.expireTokens();
    EXPECT_TRUE(kitchen.get("/napster").isErrorItem("authentication"));
    ASSERT_TRUE(kitchen.authenticate());
    EXPECT_EQ(kitchen.get("/napster").string("/id/1"), "listing");

    EXPECT_EQ(kitchen.get("/napster/logout").string("/id/2"), "true");
    EXPECT_EQ(kitchen.get("/napster").string("/id/1"), "form");
    EXPECT_EQ(kitchen.get("/napster/logout").string("/id/2"), "true") << "a second logout is no error";
}

} // namespace
