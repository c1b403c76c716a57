// Every rule of the stand-in host is broken once by an effect built for it, and must be noticed,
// alone.
#include "orvinhost/Instance.h"
#include "orvinhost/Module.h"

#include <gtest/gtest.h>

#include <set>

namespace orvin::stand_in {

void PrintTo(const RuleText& rule, std::ostream* out);
void PrintTo(const RuleText& rule, std::ostream* out) {
    *out << rule.id;
}

namespace {

constexpr PF_Cmd kChooseFault = 1000;

// The whole life of an instance, with every command that the host has.
void liveThrough(Instance& instance, Host& host) {
    instance.globalSetup();
    instance.paramsSetup();
    ASSERT_FALSE(instance.sequenceSetup().failed());
    host.params()[2].track = Track({1.0});  // see the comp
    std::shared_ptr<ImageSource> picture = std::make_shared<ImageSource>(apps::Picture(5, 4));
    host.params()[8].layer = picture;
    instance.plainEvent(PF_Event_NEW_CONTEXT, 0);
    instance.userChanged(2, 0);
    instance.updateParamsUi(0);
    instance.queryDynamicFlags(0);
    instance.draw(0);
    const PF_Point path[] = {{10, 3}, {20, 3}};
    instance.click(0, {5, 3}, path);
    World output(6, 4);
    instance.render(0, output);
    std::vector<std::uint8_t> flat;
    instance.flatten(flat);
    instance.resetup();
    instance.plainEvent(PF_Event_CLOSE_CONTEXT, 0);
    instance.sequenceSetdown();
    instance.globalSetdown();
    host.checkAtEnd();
}

std::set<std::string> brokenBy(const std::string& fault, PF_SpecVersion version = {13, 28}) {
    const Module module(ORVIN_TEST_EFFECT_PATH);
    std::string name = fault;
    module.entry()(kChooseFault, nullptr, nullptr, nullptr, nullptr, name.data());
    HostSettings settings;
    settings.version = version;
    settings.width = 6;
    settings.height = 4;
    if (fault == "abort.ignored") settings.abortAfter = 2;
    RuleBook rules;
    Host host(settings, Comp(6, 4), rules);
    Instance instance(host, module.entry());
    liveThrough(instance, host);
    std::set<std::string> ids;
    for (const Finding& finding : rules.findings())
        ids.insert(ruleText(finding.rule).id);
    return ids;
}

class BrokenRule : public testing::TestWithParam<RuleText> {};

TEST_P(BrokenRule, IsNoticedAlone) {
    const std::string id = GetParam().id;
    std::set<std::string> expected{id};
    // What comes along with some faults by their nature.
    if (id == "sequence.handle" || id == "sequence.swapped") expected.insert("handle.leak");
    const std::set<std::string> found = brokenBy(id);
    EXPECT_TRUE(found.count(id)) << "not noticed";
    for (const std::string& other : found)
        EXPECT_TRUE(expected.count(other)) << "noticed as well: " << other;
}

// The resource has a test of its own: only modules for Windows have one.
std::vector<RuleText> provoked() {
    std::vector<RuleText> rules;
    for (const RuleText& rule : allRules())
        if (rule.rule != Rule::kPiPL) rules.push_back(rule);
    return rules;
}

INSTANTIATE_TEST_SUITE_P(All, BrokenRule, testing::ValuesIn(provoked()), [](const auto& param) {
    std::string name = param.param.id;
    for (char& c : name)
        if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
    return name;
});

TEST(Rules, AnEffectByTheBookBreaksNone) {
    EXPECT_EQ(brokenBy(""), std::set<std::string>{});
    EXPECT_EQ(brokenBy("", {12, 10}), std::set<std::string>{});
}

TEST(Rules, IdsDiffer) {
    std::set<std::string> ids;
    for (const RuleText& rule : allRules())
        EXPECT_TRUE(ids.insert(rule.id).second) << rule.id;
}

}  // namespace
}  // namespace orvin::stand_in
