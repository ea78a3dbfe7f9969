#include "AgentOptions.h"

#include <gtest/gtest.h>

namespace {
QString parseError(const QStringList &args)
{
    AgentOptions options;
    QString error;
    return options.parse(QStringList{"telvane-agent"} + args, &error) ? QString() : error;
}
} // namespace

TEST(AgentOptions, DefaultsAndValues)
{
    AgentOptions options;
    QString error;
    ASSERT_TRUE(options.parse({"telvane-agent"}, &error));
    EXPECT_EQ(options.port, 5905);
    EXPECT_EQ(options.statsIntervalSeconds, 5.0);
    EXPECT_EQ(options.auth, AgentOptions::Auth::pam);
    EXPECT_EQ(options.action, AgentOptions::Action::serve);
    EXPECT_TRUE(options.configDir.endsWith("/telvane-agent"));

    ASSERT_TRUE(options.parse({"telvane-agent", "--port", "6000", "--bind", "127.0.0.1",
                               "--stats-interval", "0.25", "--fleet", "3", "--credentials-file",
                               "/tmp/c", "--config-dir", "/tmp/cfg"},
                              &error));
    EXPECT_EQ(options.port, 6000);
    EXPECT_TRUE(options.bindAddress.isLoopback());
    EXPECT_EQ(options.statsIntervalSeconds, 0.25);
    EXPECT_TRUE(options.simulate); // a fleet is always simulated
    EXPECT_EQ(options.auth, AgentOptions::Auth::file);
    EXPECT_EQ(options.effectiveCredentialsFile(), "/tmp/c");

    ASSERT_TRUE(options.parse({"telvane-agent", "--auth", "file", "--config-dir", "/x"}, &error));
    EXPECT_EQ(options.effectiveCredentialsFile(), "/x/credentials");
}

TEST(AgentOptions, BadValuesAreRefusedWithAReason)
{
    EXPECT_TRUE(parseError({"--port", "65536"}).contains("--port"));
    EXPECT_TRUE(parseError({"--port", "abc"}).contains("--port"));
    EXPECT_TRUE(parseError({"--bind", "not-an-ip"}).contains("--bind"));
    EXPECT_TRUE(parseError({"--stats-interval", "0"}).contains("--stats-interval"));
    EXPECT_TRUE(parseError({"--stats-interval", "nan"}).contains("--stats-interval"));
    EXPECT_TRUE(parseError({"--fleet", "0"}).contains("--fleet"));
    EXPECT_TRUE(parseError({"--fleet", "10", "--port", "65530"}).contains("consecutive"));
    EXPECT_TRUE(parseError({"--fleet", "2", "--port", "0"}).contains("consecutive"));
    EXPECT_TRUE(parseError({"--auth", "ldap"}).contains("--auth"));
    EXPECT_TRUE(parseError({"--no-such-option"}).contains("no-such-option"));
    EXPECT_TRUE(parseError({"extra"}).contains("extra"));
}
