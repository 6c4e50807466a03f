// The built-in steps of the effects of the session's own writers, and the
// two walks that apply them with the catalogue rows' expressions.
#include "reader/effects/EffectTranslation.h"

#include <algorithm>
#include <cmath>

#include "reader/effects/ValueExpression.h"
#include "services/Conversions.h"
#include "services/NumberText.h"
#include "services/TextHelpers.h"

namespace morvanta {
namespace {

constexpr std::string_view kGraphicEqualizer = "Graphic Equalizer";
constexpr int kFullBands = 30;

struct BandForm {
    int Bands;
    std::string_view ComponentId;
    std::string_view Name;
};
constexpr BandForm kTenBands{10, "3792d46f-5036-4be6-ab5a-177622246a5d", "Graphic Equalizer (10 Bands)"};
constexpr BandForm kTwentyBands{20, "0e133ef5-2371-48db-9b72-b4c441460391", "Graphic Equalizer (20 Bands)"};

// Printed with seven decimals and read back.
double RoundTo7(double v) { return ParseNumberPrefix(FixedPlacesText(v, 7)); }

double HalfSampleRate(const Session& s) { return static_cast<double>(s.SampleRate) / 2; }

// Row r of the effect, counted from 1.
RackParameter& Row(Session& s, const EffectRows& rows, std::size_t r, std::string_view effect) {
    if (r < 1 || rows.First + r > rows.End) {
        throw EffectStepError("the catalogue of \"" + std::string(effect) + "\" has " +
                              std::to_string(rows.End - rows.First) + " rows, and its steps need row " +
                              std::to_string(r));
    }
    return s.RackParameters[rows.First + r - 1];
}

// The rows and the slot take the effect's name, the slot its component id.
void Rename(Session& s, const EffectRows& rows, const std::string& name, const std::string& componentId) {
    for (std::size_t r = rows.First; r < rows.End; ++r) s.RackParameters[r].EffectName = name;
    s.RackSlots[rows.Slot].EffectName = name;
    s.RackSlots[rows.Slot].ComponentId = componentId;
}

// Removes the upper bands of a 30-band catalogue: they stand last.
void DropBands(Session& s, EffectRows& rows, double bands) {
    const std::int32_t drop = RoundHalfEven(kFullBands - bands);
    if (drop <= 0) return;
    if (static_cast<std::size_t>(drop) > rows.End - rows.First) {
        throw EffectStepError("the catalogue of \"Graphic Equalizer\" has " + std::to_string(rows.End - rows.First) +
                              " rows, fewer than the " + std::to_string(drop) + " bands to remove");
    }
    // The effect's rows are the last of the list: nothing has been read behind them.
    const auto count = static_cast<std::size_t>(drop);
    s.RackParameters.erase(s.RackParameters.begin() + static_cast<std::ptrdiff_t>(rows.End - count),
                           s.RackParameters.begin() + static_cast<std::ptrdiff_t>(rows.End));
    rows.End -= count;
}

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

bool Is(std::string_view name, std::initializer_list<std::string_view> names) {
    for (std::string_view n : names)
        if (name == n) return true;
    return false;
}

// The built-in step of a named parameter, before its expression.
double NamedStep(Session& s, std::string_view effect, const EffectRows& rows, std::string_view name, double v) {
    auto startsWith = [&](std::string_view prefix) { return name.starts_with(prefix); };
    if (effect == "Multiband Compressor") {
        if (startsWith("Crossover Mid Cutoff") || startsWith("Crossover High Cutoff") || startsWith("Limiter Attack"))
            return RoundTo7(v);
    } else if (effect == "Graphic Phase Shifter") {
        if (startsWith("Linear/Log")) return v < 0.75 ? 0 : 1;
        if (name == "Attenuate All") return 1 - v;
        if (Is(name, {"Lower DTMF Attenuation", "Upper DTMF Attenuation"})) return v < 0.75 ? 0 : v;
        if (name == "FFT Size") return RoundTo7(v);
        if (name == "Number of X/Y Pairs") return 6;
    } else if (effect == "Notch Filter") {
        if (startsWith("Attenuation") || name == "Attenuate All") return 1 - v;
        if (Is(name, {"Lower DTMF Attenuation", "Upper DTMF Attenuation"})) return v < 0.75 ? 0 : v;
    } else if (effect == "Channel Mixer") {
        if (Is(name, {"Gain Left to Left", "Gain Right to Left", "Gain Left to Right", "Gain Right to Right"}))
            return v < 0.5 ? 2 * v : v;
    } else if (effect == "Automatic Phase Correction") {
        if (name == "ms") return v <= 0.5 ? 3 : v;
        if (name == "Analysis Size")
            return v <= 0.0002 ? 128 : v <= 0.04 ? 256 : v <= 0.1 ? 512 : v <= 0.25 ? 1024 : v <= 0.5 ? 2048 : 4096;
        if (name == "Channel") return v <= 0.18 ? 1 : v <= 0.6 ? 2 : 3;
        if (name == "Responsiveness (Slow to Fast)") return v <= 0.04 ? 0.5 : v <= 0.25 ? 1 : v <= 0.5 ? 2 : 4;
    } else if (effect == "Adaptive Noise Reduction") {
        if (name == "FFT Size") {
            return v <= 0.000031 ? 128 : v <= 0.008 ? 256 : v <= 0.025 ? 512 : v <= 0.06 ? 1024
                 : v <= 0.12     ? 2048
                 : v <= 0.25     ? 4096
                 : v <= 0.5      ? 8192
                                 : 16384;
        }
        if (name == "High Quality Mode") return v > 0.5 ? 1 : v;
    } else if (effect == "Flanger") {
        if (name == "Modulation Rate") {
            if (v == 0) throw EffectStepError("the Flanger's \"Modulation Rate\" of 0 has no rate");
            Row(s, rows, rows.End - rows.First, effect).Value = 2 / (v * 60000);
        }
    } else if (effect == "Parametric Equalizer") {
        if (name == "Low Shelf Cutoff") {
            const double t = ScaleFromRange(1.0, static_cast<double>(s.SampleRate) / 4, v);
            return std::max(NormalizeToRange(20.0, HalfSampleRate(s), t), -0.000000000014);
        }
        if (name == "High Shelf Cutoff")
            return NormalizeToRange(20.0, HalfSampleRate(s), ScaleFromRange(1000.0, HalfSampleRate(s), v));
        if (Is(name, {"Band 1 Width", "Band 2 Width", "Band 3 Width", "Band 4 Width", "Band 5 Width"})) return v / 100;
    } else if (effect == "Dynamics Processing") {
        if (Is(name, {"Level Detector - Attack Time", "Level Detector - Release Time", "Gain Processor - Attack Time"}))
            return RoundTo7(v);
        if (name == "Low Cutoff") return std::max(RoundTo7(v), 0.0);
        if (name == "High Cutoff") return std::clamp(RoundTo7(v), 0.0, 1.0);
        if (name == "Number of X/Y Pairs") {
            const double r = RoundTo7(v);
            if (r == 0.0195305) return 0.4285714;
            if (r == 0.0507805) return 1;
            if (r == 0.042968) return 0.8571429;
            if (r == 0.7142857 || r == 0.0351555) return 0.7142857;
            if (r == 0.011718) return 0.2857143;
            return 0.5714286;
        }
    }
    return v;
}

}  // namespace

void TranslateNamedParameter(Session& s, std::string_view effectKey, EffectRows& rows, const std::string& name,
                             double value, bool& mismatchSeen) {
    // A step that fails is passed over once a mismatch has been seen.
    auto guarded = [&](auto&& step) {
        try {
            step();
        } catch (const ExpressionError&) {
            if (!mismatchSeen) throw;
        } catch (const EffectStepError&) {
            if (!mismatchSeen) throw;
        }
    };
    double v = value;
    const std::string_view trimmedName = Trimmed(name);
    for (std::size_t r = rows.First; r < rows.End; ++r) {
        if (Trimmed(s.RackParameters[r].SesParameterName) == name) {
            guarded([&] { v = NamedStep(s, effectKey, rows, trimmedName, v); });
            guarded([&] { v = EvaluateValueExpression(v, s.RackParameters[r].ValueExpression); });
            s.RackParameters[r].Value = v;
            return;
        }
        mismatchSeen = true;
        if (effectKey != kGraphicEqualizer || trimmedName != "Number of Bands" || v == kFullBands) continue;
        // The band step: the catalogue is the one for 30 bands.
        const BandForm& form = v < 0.2 ? kTenBands : kTwentyBands;
        if (v >= 0.6) {
            v = kFullBands;
            continue;
        }
        guarded([&] {
            DropBands(s, rows, form.Bands);
            Rename(s, rows, std::string(form.Name), std::string(form.ComponentId));
        });
        return;
    }
}

namespace {

// The walk of an older rack's values, with its state.
class PositionalWalk {
public:
    PositionalWalk(Session& s, std::string_view effectName, std::string_view catalogueName, EffectRows& rows,
                   RackForm form)
        : s_(s), effect_(effectName), catalogue_(catalogueName), rows_(rows), track_(form == RackForm::Track),
          name_(s.RackSlots[rows.Slot].EffectName), componentId_(s.RackSlots[rows.Slot].ComponentId) {}

    // False ends the walk.
    bool Value(std::int32_t k, double v) {
        const bool dynamics = catalogue_ == "Dynamics Processing";
        if (track_ && dynamics && k == 1) pairs_ = RoundHalfEven(v);
        if (track_ && effect_ == "Channel Mixer") v = ChannelMixer(k, v);
        if (effect_ == kGraphicEqualizer && k == 33) v = Bands(v);
        if (effect_ == kGraphicEqualizer && k == 34) {
            Rename(s_, rows_, name_, componentId_);
            Row(s_, rows_, 3, effect_).Value = (v - 1.5) / 118.5;
            return false;
        }
        if (track_ && dynamics) Dynamics(k, v);

        RackParameter* row = FirstWithIndex(k);
        if (!row) return true;
        v = EvaluateValueExpression(v, row->ValueExpression, track_);
        if (catalogue_ == "Parametric Equalizer") v = Parametric(k, static_cast<std::size_t>(row - &s_.RackParameters[0]), v);
        if (!(track_ && dynamics)) row->Value = v;
        return true;
    }

private:
    RackParameter* FirstWithIndex(std::int32_t k) {
        for (std::size_t r = rows_.First; r < rows_.End; ++r)
            if (s_.RackParameters[r].ParameterIndex == k) return &s_.RackParameters[r];
        return nullptr;
    }

    RackParameter& RowOf(std::size_t r) { return Row(s_, rows_, r, effect_); }

    double ChannelMixer(std::int32_t k, double v) {
        v = 0.5 + v / 2;
        switch (k) {
            case 1: RowOf(2).Value = v; return v;
            case 2: { const double t = RowOf(2).Value; RowOf(3).Value = v; return t; }
            case 3: { const double t = RowOf(3).Value; RowOf(10).Value = v; return t; }
            case 4: RowOf(11).Value = v; return v;
            case 10: return RowOf(10).Value;
            case 11: return RowOf(11).Value;
            default: return v;
        }
    }

    double Bands(double v) {
        if (v >= kFullBands) return v;
        DropBands(s_, rows_, v);
        if (v == kTenBands.Bands || v == kTwentyBands.Bands) {
            const BandForm& form = v == kTenBands.Bands ? kTenBands : kTwentyBands;
            name_ = form.Name;
            componentId_ = form.ComponentId;
        }
        Rename(s_, rows_, name_, componentId_);
        return 0;
    }

    void Dynamics(std::int32_t k, double v) {
        if (k <= 2 * pairs_ + 1) {
            RackParameter* row = FirstWithIndex(k);
            if (!row) return;
            if (k == 1) row->Value = v == 4 ? 0.571428571429 : v == 8 ? 1 : 3.0 / 7;
            else if (k <= 15) row->Value = v / 1000;
            else if (k == 16 || k == 17 || k == 19) row->Value = 0;
            else if (k == 21 || k == 31 || k == 32) row->Value = 1;
            else row->Value = v;
            return;
        }
        const std::int64_t j = 16 - 2 * static_cast<std::int64_t>(pairs_) + k;
        double value = v;
        if (j == 18 || j == 23 || j == 25) value = v / 500;
        else if (j == 19 || j == 24) value = v / 2000;
        else if (j == 26 || j == 27) value = NormalizeToRange(-48.0, 48.0, v);
        else if ((j == 29 || j == 30) && v > 0) value = NormalizeToRange(20.0, HalfSampleRate(s_), v);
        for (std::size_t r = rows_.First; r < rows_.End; ++r)
            if (s_.RackParameters[r].ParameterIndex == j) s_.RackParameters[r].Value = value;
    }

    // After the expression; `found` is the row of value k in RackParameters.
    double Parametric(std::int32_t k, std::size_t found, double v) {
        auto normalised = [&](double x) { return NormalizeToRange(20.0, HalfSampleRate(s_), x); };
        switch (k) {
            case 1: if (v == 1) constantQ_ = true; return v;
            case 2: case 4: return normalised(v);
            case 3: case 5: case 21: case 22: case 23: case 24: case 25: return AA4_db_to_x(v);
            case 11: case 12: case 13: case 14: case 15: {
                const std::size_t behind = found + static_cast<std::size_t>(28 - 3 * (k - 11));
                if (behind >= rows_.End) RowOf(behind - rows_.First + 1);  // fails: no such row
                s_.RackParameters[behind].Value = v;
                return normalised(v);
            }
            case 26: Closing(); return NormalizeToRange(-96.0, 48.0, v);
            default: return v;
        }
    }

    void Closing() {
        const double half = HalfSampleRate(s_);
        for (std::size_t band = 0; band < 5; ++band) {
            RackParameter& target = RowOf(33 + band);
            if (constantQ_) {
                RowOf(6 + 4 * band).Value = target.Value / 10000;
            } else {
                if (target.Value == 0)
                    throw EffectStepError("the Parametric Equalizer's row " + std::to_string(33 + band) +
                                          " is 0 where the bandwidth is divided by it");
                const double f = ScaleFromRange(20.0, half, RowOf(5 + 4 * band).Value);
                target.Value = NormalizeToRange(0.0, 10000.0, f / target.Value);
            }
        }
        RowOf(26).Value = constantQ_ ? 1 : 0;
    }

    Session& s_;
    std::string_view effect_;
    std::string_view catalogue_;
    EffectRows& rows_;
    bool track_;
    std::string name_;
    std::string componentId_;
    bool constantQ_ = false;
    std::int32_t pairs_ = 0;
};

}  // namespace

void TranslatePositionalParameters(Session& s, std::string_view effectName, std::string_view catalogueName,
                                   EffectRows& rows, std::string_view parameterText, RackForm form) {
    PositionalWalk walk(s, effectName, catalogueName, rows, form);
    std::string buffer;
    std::int32_t k = 0;
    for (std::size_t i = 0; i < parameterText.size(); ++i) {
        const char c = parameterText[i];
        const bool last = i + 1 == parameterText.size();
        const bool ends = c == ',' || (form == RackForm::Track && c == '\0') || (form == RackForm::Bus && last);
        if (!ends) {
            if (c != '\0') buffer += c;
            continue;
        }
        ++k;
        const double v = ParseNumberPrefix(buffer);
        buffer.clear();
        if (!walk.Value(k, v)) return;
    }
}

}  // namespace morvanta
