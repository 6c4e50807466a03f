// The dump of the records that no reader golden fills, and of texts and
// numbers that need care: quotes, backslashes, bytes outside ASCII, -0,
// the shortest double, and the send slots that are not all zero.
#include <gtest/gtest.h>

#include "TestSupport.h"

namespace morvanta::testing {
namespace {

TEST(SessionDump, RackListsEscapesAndSendSlots) {
    Session s;
    s.SesVersion = "Say \"hi\" \\ there\x01\xE9";
    s.Tempo = 0.1 + 0.2;
    s.RackSlots = {{.OwnerId = 1, .EffectName = "Reverb", .ComponentId = "Audition.Reverb", .EditorHeight = 2,
                    .EditorLeft = 3, .EditorTop = 4, .EditorWidth = 5, .SlotNumber = 6, .PresetText = "<a/>"}};
    s.RackParameters = {{.OwnerId = 7, .EffectName = "Reverb", .ParameterIndex = 8, .ParameterName = "Mix",
                         .SesParameterName = "Wet", .ValueExpression = "value# / 2", .Value = 1e-300,
                         .ValueFormat = "0.00", .SlotNumber = 9}};
    s.EffectAutomation = {{.TrackId = 10, .SampleOffset = 11, .Value = -0.0, .SlotNumber = 12, .SlotRow = 13,
                           .ParameterName = "Mix"}};
    TrackSend send{.TrackId = 14};
    send.Slots[3] = {.OutputBus = 20001, .Level = 0.5};
    send.Slots[15] = {.PreFader = 1};
    s.TrackSends = {send};
    ExpectModelGolden("dump-rack-lists", s);
}

}  // namespace
}  // namespace morvanta::testing
