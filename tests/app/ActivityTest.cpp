#include "app/Activity.h"

#include <gtest/gtest.h>

namespace quillfern {
namespace {

using State = Activity::State;

TEST(ActivityTest, IsOneThingAtATime)
{
    Activity activity;
    std::string seen; // each signal with the state at its emission
    const auto note = [&](const char* name) {
        seen += std::string(name) +
                (activity.isIdle()  ? " idle"
                 : activity.isJob() ? " job"
                                    : " gathering") +
                "; ";
        EXPECT_EQ(activity.busy(), !activity.isIdle());
    };
    QObject::connect(&activity, &Activity::aboutToBegin, [&] { note("about"); });
    QObject::connect(&activity, &Activity::changed, [&] { note("changed"); });
    QObject::connect(&activity, &Activity::ended, [&] { note("ended"); });

    activity.end(State::Job);
    EXPECT_EQ(seen, "") << "nothing is under way";
    EXPECT_TRUE(activity.begin(State::Job));
    EXPECT_FALSE(activity.begin(State::Gathering));
    EXPECT_FALSE(activity.begin(State::Job));
    activity.end(State::Gathering); // end() for a state that did not begin must not end the job
    EXPECT_EQ(seen, "about idle; changed job; ");
    EXPECT_TRUE(activity.isJob());
    seen.clear();
    activity.end(State::Job);
    EXPECT_EQ(seen, "changed idle; ended idle; ");
    EXPECT_TRUE(activity.begin(State::Gathering));
    EXPECT_TRUE(activity.isGathering());
}

} // namespace
} // namespace quillfern
