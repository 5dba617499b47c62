#include "app/Activity.h"
#include "app/ActionTable.h"

#include <QSet>
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

TEST(ActionTable, GivesEveryCommandANameATipAndAPlaceOfItsOwn)
{
    QSet<QString> names;
    QSet<std::pair<int, int>> taken;
    for (const ActionRow& row : actionTable()) {
        EXPECT_FALSE(names.contains(QString::fromLatin1(row.name))) << row.name;
        names.insert(QString::fromLatin1(row.name));
        EXPECT_STRNE(row.tip, "") << row.name;
        EXPECT_NE(row.spots[0].place, Place::None) << row.name;
        for (const Spot& spot : row.spots) {
            const std::pair position(static_cast<int>(spot.place), spot.position);
            EXPECT_TRUE(spot.place == Place::None || !taken.contains(position)) << row.name;
            taken.insert(position);
        }
        const bool isOnToolbar = std::any_of(row.spots.begin(), row.spots.end(),
                                             [](const Spot& spot) { return spot.place == Place::Toolbar; });
        EXPECT_EQ(isOnToolbar, row.shortText != nullptr) << row.name;
    }
}

} // namespace
} // namespace quillfern
