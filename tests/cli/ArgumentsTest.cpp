#include "Arguments.h"
#include "CliRunner.h"

#include <gtest/gtest.h>

namespace {

// Options land in their fields; --rules counts also after --lines FILE; "--" ends the options; --version
// wins over what follows and prints the project's version. (Every refusal:
// Cli.RefusalsExitOneWithTheirMessage.)
TEST(Arguments, ReadsOptionsAndModes)
{
    const auto batch = std::get<Invocation>(parseArguments(
        {"--format", "csv", "--jobs", "3", "--shard", "2/5", "--rules", "core", "a.pdf", "--", "--b.pdf"}));
    EXPECT_EQ(batch.mode, Invocation::Mode::batch);
    EXPECT_EQ(batch.options.format, ExportFormat::csv);
    EXPECT_EQ(batch.options.jobs, 3);
    EXPECT_EQ(batch.options.shard.k, 2);
    EXPECT_EQ(batch.options.rules, RuleSet::Core);
    EXPECT_EQ(batch.options.paths, QStringList({"a.pdf", "--b.pdf"}));
    const auto lines = std::get<Invocation>(parseArguments({"--lines", "-", "--rules", "core"}));
    EXPECT_EQ(lines.input, "-");
    EXPECT_EQ(lines.options.rules, RuleSet::Core);
    EXPECT_EQ(std::get<Invocation>(parseArguments({"--version", "--bogus"})).mode, Invocation::Mode::version);
    EXPECT_EQ(runCli({"--version"}).out, "tabrix-cli " TABRIX_VERSION "\n");
}

} // namespace
