#include "cli/banner.hpp"
#include "cli/build_settings.hpp"
#include "cli/run_flow.hpp"

#include <gtest/gtest.h>

#include <stdlib.h>

#include <cstdint>
#include <limits>
#include <string>

TEST(Banner, ShowsTheBuildTimeShiftedByTheZoneOfTheMachine)
{
  auto const banner_in = [](char const* zone, char const* date) {
    setenv("TZ", zone, 1);
    return banner(cvt_DATE_TIME(date, "09:29:06"));
  };
  auto const start = "QMB Version Getter 1.0.0-7" + std::string{maker_notice};
  EXPECT_EQ(banner_in("UTC0", "Jul 25 2022"), start + " (2022-Jul-25 09:29:06).");
  EXPECT_EQ(banner_in("UTC0", "Dec  1 2026"), start + " (2026-Dec-01 09:29:06).");
  EXPECT_EQ(banner_in("CET-1CEST,M3.5.0,M10.5.0", "Jul 25 2022"),
            start + " (2022-Jul-25 07:29:06).");
}

TEST(RunFlow, AnAnswerIsStaleAfterADayButNotInTheFuture)
{
  EXPECT_FALSE(is_stale(1'000'000'000 + 86'400, 1'000'000'000));
  EXPECT_TRUE(is_stale(1'000'000'000 + 86'401, 1'000'000'000));
  EXPECT_FALSE(is_stale(1'000'000'000, std::numeric_limits<std::int64_t>::max()));
}
