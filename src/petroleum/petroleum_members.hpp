// The member table of ztPetroleum.
#pragma once

#include "automation/member_table.hpp"
#include "petroleum/petroleum.hpp"

namespace vqmath63::members {

using automation::answer;
using automation::arg;
using automation::lent;
using automation::method;
using automation::out;

inline constexpr auto kPetroleum = automation::table<ztPetroleum>(
    "ztPetroleum", "Volume factors of oil and water from tables.",
    {0xCBC20BAE, 0xA31A, 0x4347, {0xA0, 0xCC, 0xDE, 0xB5, 0xBE, 0x96, 0x16, 0xBB}},
    {0x0A450A8A, 0xA0A0, 0x480C, {0x93, 0x4A, 0xFF, 0xEF, 0xFB, 0xCB, 0xD8, 0x53}},
    // clang-format off
    method<&ztPetroleum::GetVolumeCorrectionLive> (1, "GetVolumeCorrectionLive",  {lent("dPrimary"), arg("iMapPrimary"), arg("nPrimary"), arg("dSecondary"), arg("dValue"), arg("nVal"), lent("dDataPrimary"), arg("dDataSecondary"), arg("dNull"), answer("dB"), out("qOK")}, "Live-oil factor dB at (dDataPrimary, dDataSecondary); curve p of the table has the entries from iMapPrimary(p), its saturation point first."),
    method<&ztPetroleum::GetVolumeCorrectionDead> (2, "GetVolumeCorrectionDead",  {arg("dTable1"), arg("dTable2"), arg("nTable"), arg("dData1"), answer("dB"), out("qOK")}, "Dead-oil factor dB at dData1, interpolated in dTable2 over dTable1."),
    method<&ztPetroleum::GetWaterVolumeCorrection>(3, "GetWaterVolumeCorrection", {arg("dTable1"), arg("dTable2"), arg("dTable3"), arg("nTable"), arg("dData1"), answer("dB"), out("qOK")}, "Water factor dB at dData1 from the reference value dTable1(1), the factor there dTable2(1) and the compressibility dTable3(1).")
    // clang-format on
);

}  // namespace vqmath63::members
