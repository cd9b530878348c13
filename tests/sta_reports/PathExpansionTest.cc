// Our cached path expansion against OpenSTA's own PathExpanded, point by
// point, on every end point of the example designs; and the fanout the
// point tables show against the netlist's own count of loads.
#include "ReportTestEngine.hh"

#include "Engine.hh"
#include "reports/PathExpansion.hh"
#include "reports/PathFinder.hh"

#include "Machine.hh"
#include "Network.hh"
#include "PathEnd.hh"
#include "PathExpanded.hh"
#include "Search.hh"
#include "Sta.hh"

#include <gtest/gtest.h>

#include <memory>

namespace vexa::test {
namespace {

struct ExpansionCase
{
  const char *design;
  const char *constraints;
  const char *label;
};

class PathExpansion : public testing::TestWithParam<ExpansionCase>
{};

TEST_P(PathExpansion, MatchesOpenStaOnEveryEndPoint)
{
  const ExpansionCase &c = GetParam();
  ReportTestEngine &test = ReportTestEngine::with_design(c.design, c.constraints);
  sta::Sta *sta = test.engine().sta();
  // One cache for all paths of all four analyses, as in a report: later
  // paths are laid out mostly from what earlier ones left in it.
  PrevPathCache cache(sta);
  ExpandedPath ours;
  size_t paths = 0;
  for (const sta::MinMaxAll *min_max : {sta::MinMaxAll::max(), sta::MinMaxAll::min()}) {
    // Three paths per end point: the second and third are enumerated
    // paths, which have no slot on their vertex and are not cached.
    std::unique_ptr<sta::PathEndSeq> ends(
      sta->findPathEnds(nullptr, nullptr, nullptr, false, nullptr, min_max, 100000, 3, false,
                        -sta::INF, sta::INF, true, nullptr, true, true, true, true, false,
                        false));
    for (sta::PathEnd *end : *ends) {
      sta::PathExpanded theirs(end->path(), sta);
      ours.expand(end->path(), cache, sta);
      const std::string where = pin_display_name(sta, end->path()->pin(sta));
      ASSERT_EQ(ours.size(), theirs.size()) << where;
      EXPECT_EQ(ours.startIndex(), theirs.startIndex()) << where;
      for (size_t i = 0; i < theirs.size(); i++) {
        EXPECT_EQ(ours.path(i)->vertex(sta), theirs.path(i)->vertex(sta)) << where << " " << i;
        EXPECT_EQ(ours.path(i)->tag(sta), theirs.path(i)->tag(sta)) << where << " " << i;
        EXPECT_EQ(ours.path(i)->arrival(sta), theirs.path(i)->arrival(sta)) << where << " " << i;
        EXPECT_EQ(ours.prevArc(i), theirs.prevArc(i)) << where << " " << i;
      }
      paths++;
    }
  }
  EXPECT_GT(paths, 10u);
  // The paths share their points: look-ups were answered from the cache.
  EXPECT_LT(cache.misses(), cache.lookups());
}

TEST_P(PathExpansion, FanoutCountsTheLoadsOfEveryDriver)
{
  const ExpansionCase &c = GetParam();
  ReportTestEngine &test = ReportTestEngine::with_design(c.design, c.constraints);
  sta::Sta *sta = test.engine().sta();
  sta::Network *network = sta->network();
  PathReportCache cache(sta);
  size_t drivers = 0;
  auto check = [&](const sta::Pin *pin) {
    int loads = 0;
    if (network->isDriver(pin)) {
      drivers++;
      std::unique_ptr<sta::PinConnectedPinIterator> connected(network->connectedPinIterator(pin));
      while (connected->hasNext()) {
        const sta::Pin *other = connected->next();
        if (other != pin && network->isLoad(other))
          loads++;
      }
    }
    EXPECT_EQ(cache.pin(pin).fanout, loads) << network->pathName(pin);
  };
  std::unique_ptr<sta::LeafInstanceIterator> leaves(network->leafInstanceIterator());
  while (leaves->hasNext()) {
    std::unique_ptr<sta::InstancePinIterator> pins(network->pinIterator(leaves->next()));
    while (pins->hasNext())
      check(pins->next());
  }
  std::unique_ptr<sta::InstancePinIterator> ports(network->pinIterator(network->topInstance()));
  while (ports->hasNext())
    check(ports->next());
  EXPECT_GT(drivers, 10u);
}

INSTANTIATE_TEST_SUITE_P(
  Examples, PathExpansion,
  testing::Values(ExpansionCase{"datapath", "", ""}, ExpansionCase{"twoclocks", "", ""},
                  ExpansionCase{"resets", "", ""},
                  ExpansionCase{"twoclocks", "set_propagated_clock [all_clocks]", "_propagated"},
                  ExpansionCase{"resets", "set_propagated_clock [all_clocks]", "_propagated"}),
  [](const testing::TestParamInfo<ExpansionCase> &info) {
    return std::string(info.param.design) + info.param.label;
  });

} // namespace
} // namespace vexa::test
