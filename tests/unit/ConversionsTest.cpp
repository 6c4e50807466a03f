// Gain, pan and base-16 conversions: the reference points and the
// continuity the callers rely on.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "services/Conversions.h"
#include "services/NumberText.h"

namespace morvanta {
namespace {

TEST(Conversions, DecibelsAndBack) {
    EXPECT_DOUBLE_EQ(ConvertGain(1.0), 0.0);
    EXPECT_NEAR(ConvertGain(2.0), 6.0206, 1e-4);
    EXPECT_EQ(ConvertGain(0.0), kSilenceDb);
    EXPECT_EQ(ConvertGain(-1.0), kSilenceDb);
    EXPECT_DOUBLE_EQ(ConvertGainBack(0.0), 1.0);
    EXPECT_EQ(ConvertGainBack(kSilenceDb), 0.0);
    for (double g : {0.001, 0.25, 0.5, 1.0, 1.7, 3.98})
        EXPECT_NEAR(ConvertGainBack(ConvertGain(g)), g, 1e-12) << g;
}

TEST(Conversions, FaderCurveReferencePoints) {
    EXPECT_EQ(GetNormalizedValue(kSilenceDb), 0.0);
    EXPECT_EQ(GetNormalizedValue(-1e9), 0.0);
    std::vector<std::string> positions;
    for (double db : {-15, -6, 0, 6, 15}) positions.push_back(FixedPlacesText(GetNormalizedValue(db), 4));
    EXPECT_EQ(positions, (std::vector<std::string>{"0.3000", "0.4771", "0.6500", "0.8229", "1.0000"}));
    EXPECT_EQ(GetNormalizedValue(40), 1.0);
    EXPECT_EQ(GetNormalizedValue(ConvertGain(0.0)), 0.0);  // a gain of 0 writes 0
    // Continuous across 0 dB.
    EXPECT_NEAR(GetNormalizedValue(-1e-9), GetNormalizedValue(1e-9), 1e-9);
}

TEST(Conversions, EqualiserGainPosition) {
    EXPECT_EQ((std::vector<double>{AA4_db_to_x(0.0), AA4_db_to_x(-30.0), AA4_db_to_x(30.0), AA4_db_to_x(45.0)}),
              (std::vector<double>{0.5, 0.0, 1.0, 1.0}));
    EXPECT_EQ(FixedPlacesText(AA4_db_to_x(6.0), 7), "0.6000000");
}

TEST(Conversions, EqualGainsGivePanZeroAndTheirOwnLevel) {
    for (double g : {0.0, 0.3, 1.0, 2.5}) {
        double pan = 99, vol = 99;
        LeftRightToPanVolA_Old(g, g, pan, vol);
        EXPECT_EQ(pan, 0.0) << g;
        EXPECT_NEAR(ConvertGainBack(vol), g, 1e-12) << g;
        LeftRightToPanVolC(g, g, pan, vol);
        EXPECT_NEAR(pan, 0.0, 1e-12) << g;
        EXPECT_NEAR(ConvertGainBack(vol), g, 1e-12) << g;
        EXPECT_NEAR(ConvertGainBack(lr_to_vol(g, g)), g, 1e-12) << g;
    }
    // Nearly equal gains meet the equal ones.
    double pan = 0, vol = 0;
    LeftRightToPanVolC(1.0, 1.0 + 1e-12, pan, vol);
    EXPECT_NEAR(ConvertGainBack(vol), 1.0, 1e-9);
}

TEST(Conversions, PanLaws) {
    double pan = 0, vol = 0;
    LeftRightToPanVolA_Old(1.0, 0.0, pan, vol);
    EXPECT_EQ(pan, -100.0);
    EXPECT_EQ(vol, 0.0);
    LeftRightToPanVolA_Old(0.5, 1.0, pan, vol);
    EXPECT_EQ(pan, 50.0);
    LeftRightToPanVolA_Old(0.8, 0.4, pan, vol);
    EXPECT_DOUBLE_EQ(pan, -50.0);
    LeftRightToPanVolC(0.0, 1.0, pan, vol);
    EXPECT_NEAR(pan, 100.0, 1e-12);
    LeftRightToPanVolC(1.0, 0.0, pan, vol);
    EXPECT_NEAR(pan, -100.0, 1e-12);
    EXPECT_TRUE(std::isfinite(vol));
}

TEST(Conversions, Base16ToBase64) {
    // Foreign characters are skipped and an odd nibble dropped.
    std::vector<std::string> encoded;
    for (const char* hex : {"4D616E", "4d6f", "4D", "4D 61-6E7", ""}) encoded.push_back(kelb16_to_base64(hex));
    EXPECT_EQ(encoded, (std::vector<std::string>{"TWFu", "TW8=", "TQ==", "TWFu", ""}));
    const std::string source = "00FF10203040506070";
    EXPECT_LE(kelb16_to_base64(source).size() + 1, source.size() + 2);
}

TEST(Conversions, ZeroAndNegativeInputsGiveFiniteResults) {
    const double inputs[] = {0.0, -0.0, -1.0, -1e300, 1e-300, 4.9e-324, 1e300};
    for (double a : inputs) {
        EXPECT_TRUE(std::isfinite(ConvertGain(a))) << a;
        EXPECT_TRUE(std::isfinite(ConvertGainBack(a))) << a;
        EXPECT_TRUE(std::isfinite(GetNormalizedValue(a))) << a;
        EXPECT_TRUE(std::isfinite(AA4_db_to_x(a))) << a;
        for (double b : inputs) {
            double pan = 0, vol = 0;
            LeftRightToPanVolA_Old(a, b, pan, vol);
            EXPECT_TRUE(std::isfinite(pan) && std::isfinite(vol)) << a << " " << b;
            LeftRightToPanVolC(a, b, pan, vol);
            EXPECT_TRUE(std::isfinite(pan) && std::isfinite(vol)) << a << " " << b;
            EXPECT_TRUE(std::isfinite(lr_to_vol(a, b))) << a << " " << b;
        }
    }
    EXPECT_EQ(GetNormalizedValue(-std::numeric_limits<double>::infinity()), 0.0);
    EXPECT_EQ(ConvertGainBack(-300.0), 0.0);
    EXPECT_NEAR(ConvertGain(1e-12), -240.0, 1e-9);  // no floor above a gain of 0
}

TEST(Conversions, Base16ToBase64IntoTheCallersBuffer) {
    // A target of one zero character and Len(S) + 1 blanks: the text and its
    // zero go in front, the blanks the function did not reach stay.
    std::string target = std::string(1, '\0') + std::string(7, ' ');
    EXPECT_EQ(kelb16_to_base64("4D616E", target), 0);
    EXPECT_EQ(target, std::string("TWFu\0   ", 8));
    std::string tooSmall(3, ' ');
    kelb16_to_base64("4D616E", tooSmall);
    EXPECT_EQ(tooSmall, "TWF");
}

TEST(Conversions, RangeHelpers) {
    EXPECT_EQ(FixedPlacesText(NormalizeToRange(-96.0, 48.0, 0.0), 7), "0.6666667");
    EXPECT_EQ(ScaleFromRange(0, 360, NormalizeToRange(0, 240, 120)), 180.0);
    EXPECT_EQ((std::vector<int>{IsBelowHalf(0.5), IsBelowHalf(0.4999), IsBelowHalf(0), IsBelowHalf(1)}),
              (std::vector<int>{0, 1, 1, 0}));
}

}  // namespace
}  // namespace morvanta
