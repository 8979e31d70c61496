#include "default/models/filter_snapshot.h"

#include "contracts/runtime/point_fields.h"

namespace tarvo::skarnvisor {

namespace {

using tarvo::lidar::SDKPointInfo;
namespace fields = tarvo::lidar::fields;

struct FloatSlot {
    tarvo::lidar::PointField<float> field;
    float low;
    float high;
};

constexpr std::array<FloatSlot, FilterSnapshot::floatSlots> floatSlotRows{{
    {fields::azimuthCalib, -360.0F, 360.0F},
    {fields::elevationCalib, -360.0F, 360.0F},
    {fields::distance, 0.0F, 1000.0F},
    {fields::x, -1000.0F, 1000.0F},
    {fields::y, -1000.0F, 1000.0F},
    {fields::z, -1000.0F, 1000.0F},
}};

struct IntSlot {
    int (*value)(const SDKPointInfo&);
    int low;
    int high;
    bool offered;
};

template <auto Field>
int read(const SDKPointInfo& point)
{
    return Field.get(point);
}

// The high limit of a bit slot is the weight of the bit, so that its default admits both values.
constexpr std::array<IntSlot, FilterSnapshot::intSlots> intSlotRows{{
    {read<fields::intensity>, 0, 255, true},
    {read<fields::confidence>, 0, 255, false},
    {read<fields::weightFactor>, 0, 255, false},
    {read<fields::aziState>, 0, 255, false},
    {read<fields::turnIndex>, 0, 255, false},
    {read<fields::pointId>, 0, 65536, false},
    {read<fields::confidence0>, 0, 1, false},
    {read<fields::confidence1>, 0, 2, false},
    {read<fields::confidence2>, 0, 4, false},
    {read<fields::confidence3>, 0, 8, false},
    {read<fields::confidence4567>, 0, 16, false},
    {read<fields::confidence01234>, 0, 32, false},
    {read<fields::confidence5>, 0, 32, false},
    {read<fields::confidence6>, 0, 64, false},
    {read<fields::confidence7>, 0, 128, false},
    {read<fields::areaAlternate>, 0, 255, false},
    {read<fields::stepId>, 0, 1, false},
    {read<fields::spadId>, 0, 1, false},
}};

enum class Slot { Undecided, Filtered, Kept };

// Low above high is a range that wraps around, as azimuths across 0 do.
template <typename T>
Slot decide(int mode, T value, T low, T high)
{
    if (mode == 0) {
        const bool outside = low <= high ? value < low || value > high : value < low && value > high;
        return outside ? Slot::Filtered : Slot::Undecided;
    }
    const bool inside = low < high ? value >= low && value <= high : low > high && (value >= low || value <= high);
    return inside ? Slot::Kept : Slot::Undecided;
}

} // namespace

std::array<bool, FilterSnapshot::slots> FilterSnapshot::offeredAtStart()
{
    std::array<bool, slots> offered{};
    for (std::size_t slot = 0; slot < floatSlots; ++slot)
        offered[slot] = true;
    for (std::size_t slot = 0; slot < intSlots; ++slot)
        offered[floatSlots + slot] = intSlotRows[slot].offered;
    return offered;
}

std::array<float, FilterSnapshot::floatSlots * 2> FilterSnapshot::floatLimitsAtStart()
{
    std::array<float, floatSlots * 2> limits{};
    for (std::size_t slot = 0; slot < floatSlots; ++slot) {
        limits[2 * slot] = floatSlotRows[slot].low;
        limits[2 * slot + 1] = floatSlotRows[slot].high;
    }
    return limits;
}

std::array<int, FilterSnapshot::intSlots * 2> FilterSnapshot::intLimitsAtStart()
{
    std::array<int, intSlots * 2> limits{};
    for (std::size_t slot = 0; slot < intSlots; ++slot) {
        limits[2 * slot] = intSlotRows[slot].low;
        limits[2 * slot + 1] = intSlotRows[slot].high;
    }
    return limits;
}

bool FilterSnapshot::isFiltered(const SDKPointInfo& point) const
{
    if (!enabled)
        return false;
    if (mode != 0 && mode != 1)
        return true;
    for (std::size_t slot = 0; slot < floatSlots; ++slot) {
        if (!offered[slot])
            continue;
        const Slot outcome =
            decide(mode, floatSlotRows[slot].field.get(point), floatLimits[2 * slot], floatLimits[2 * slot + 1]);
        if (outcome != Slot::Undecided)
            return outcome == Slot::Filtered;
    }
    for (std::size_t slot = 0; slot < intSlots; ++slot) {
        if (!offered[floatSlots + slot])
            continue;
        const Slot outcome =
            decide(mode, intSlotRows[slot].value(point), intLimits[2 * slot], intLimits[2 * slot + 1]);
        if (outcome != Slot::Undecided)
            return outcome == Slot::Filtered;
    }
    return mode == 1;
}

} // namespace tarvo::skarnvisor
