// SPDX-License-Identifier: GPL-2.0-or-later
#include "simengine/motion/homing.h"

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

enum class Reference { Limit, HomeSwitch, Index, LimitThenIndex };

struct HomingType {
    Reference reference;
    int direction;
};

constexpr HomingType kTypes[] = {
    {Reference::Limit, 1}, {Reference::Limit, -1}, {Reference::HomeSwitch, 1},     {Reference::HomeSwitch, -1},
    {Reference::Index, 1}, {Reference::Index, -1}, {Reference::LimitThenIndex, 1}, {Reference::LimitThenIndex, -1},
};

class Homing {
public:
    Homing(AxisGroup::Reservation& axis, HomingPlan const& plan, int direction, double turn,
           std::vector<HomingLeg>* legs)
        : m_axis(axis)
        , m_plan(plan)
        , m_direction(direction)
        , m_turn(turn)
        , m_legs(legs) {}

    bool goTo(double origin) { return move(HomingLeg::Kind::Final, origin, m_plan.lowSpeed, m_plan.lowAcc); }

    std::optional<double> find(Reference reference) {
        switch (reference) {
        case Reference::Limit:
            return fast(m_direction, AxisEvent::Limit) ? slowly(AxisEvent::Limit, m_direction) : std::nullopt;
        case Reference::HomeSwitch:
            return findSwitch() ? slowly(AxisEvent::HomeOn, m_direction) : std::nullopt;
        case Reference::Index:
            return slowly(AxisEvent::Index, m_direction);
        case Reference::LimitThenIndex:
            return fast(m_direction, AxisEvent::Limit) ? slowly(AxisEvent::Index, -m_direction) : std::nullopt;
        }
        return std::nullopt;
    }

private:
    template<typename Run>
    auto leg(HomingLeg::Kind kind, Run run) {
        double const from = m_axis.place();
        auto const result = run();
        if (m_legs)
            m_legs->push_back({kind, from, m_axis.place()});
        return result;
    }

    std::optional<double> search(HomingLeg::Kind kind, double signedSpeed, double acc, AxisEvent event) {
        return leg(kind, [&] { return m_axis.search(signedSpeed, acc, event); });
    }

    bool move(HomingLeg::Kind kind, double target, double speed, double acc) {
        return leg(kind, [&] { return m_axis.move(target, speed, acc); });
    }

    std::optional<double> fast(int direction, AxisEvent event) {
        m_last = search(HomingLeg::Kind::Fast, direction * m_plan.highSpeed, m_plan.highAcc, event);
        return m_last;
    }

    /// Comes to stand in front of the home switch or on it, with the switch still in the search direction. An axis that
    /// runs into the limit without meeting the switch turns round and crosses the switch the other way.
    bool findSwitch() {
        if (fast(-m_direction, AxisEvent::HomeOff)) {
            if (fast(m_direction, AxisEvent::HomeOn))
                return true;
        }
        return fast(-m_direction, AxisEvent::HomeOn) && fast(-m_direction, AxisEvent::HomeOff);
    }

    /// The slow approaches: back off from the last place found, then search. The first index search starts where the
    /// axis stands.
    std::optional<double> slowly(AxisEvent event, int direction) {
        bool const index = event == AxisEvent::Index;
        std::optional<double> found = index ? std::nullopt : m_last;
        // Without a way back the axis cannot come to the same index again.
        int const approaches = index && m_plan.backDist == 0.0 ? 1 : std::max(1, m_plan.count);
        for (int i = 0; i < approaches; ++i) {
            if (found && !(index ? backOffIndex(*found, direction) : backOff(*found, event, direction)))
                return std::nullopt;
            found = search(HomingLeg::Kind::Slow, direction * m_plan.lowSpeed, m_plan.lowAcc, event);
            if (!found)
                return std::nullopt;
        }
        return found;
    }

    bool backOff(double from, AxisEvent event, int direction) {
        double const distance = std::fabs(m_plan.backDist);
        if (distance > 0.0 &&
            !move(HomingLeg::Kind::Back, from - direction * distance, m_plan.highSpeed, m_plan.highAcc))
            return false;
        // Too short a way leaves the switch pressed; the edge must be in front of the axis again.
        return event != AxisEvent::HomeOn ||
               search(HomingLeg::Kind::Back, -direction * m_plan.highSpeed, m_plan.highAcc, AxisEvent::HomeOff)
                   .has_value();
    }

    /// Half a turn back at most, so that no other index comes before the one that was found. A limit switch on the way
    /// is far enough back.
    bool backOffIndex(double from, int direction) {
        double const distance = std::min(std::fabs(m_plan.backDist), m_turn / 2.0);
        move(HomingLeg::Kind::Back, from - direction * distance, m_plan.highSpeed, m_plan.highAcc);
        return m_axis.isValid();
    }

    AxisGroup::Reservation& m_axis;
    HomingPlan const& m_plan;
    int m_direction;
    double m_turn; ///< axis unit between two indexes
    std::vector<HomingLeg>* m_legs;
    std::optional<double> m_last;
};

} // namespace

bool homeAxis(AxisGroup& axes, int axis, AxisConfig const& config, HomingPlan const& plan,
              std::function<bool()> const& cancelled, std::vector<HomingLeg>* legs) {
    AxisGroup::Reservation reserved(axes, axis);
    if (!reserved.isValid() || cancelled() || plan.type < 0 || plan.type >= static_cast<int>(std::size(kTypes)))
        return false;
    HomingType const type = kTypes[plan.type];
    AxisConfig withoutSoftLimits = config;
    withoutSoftLimits.softLimitEnable = false;
    reserved.configure(withoutSoftLimits);
    Homing homing(reserved, plan, type.direction, config.turn, legs);
    std::optional<double> const origin = homing.find(type.reference);
    // A carriage that stands on the origin's far side after braking goes back to it.
    bool const done = origin && homing.goTo(*origin) && reserved.setHome(0.0);
    reserved.configure(config);
    return done;
}

} // namespace sim
