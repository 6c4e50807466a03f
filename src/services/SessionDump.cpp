#include "services/SessionDump.h"

#include <charconv>

#include "services/TextHelpers.h"

namespace morvanta {
namespace {

std::string Text(double value) {
    char buffer[32];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    return std::string(buffer, result.ptr);
}

std::string Text(std::int32_t value) { return std::to_string(value); }

std::string Text(bool value) { return value ? "true" : "false"; }

std::string Text(const std::string& value) {
    std::string quoted = "\"";
    for (const char c : value) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (byte < 0x20 || byte >= 0x7F) {
            quoted += "\\x" + HexByte(byte);
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

// "{Name: value, Name: value}", one field at a time.
class Fields {
public:
    template <class Value>
    Fields& operator()(const char* name, const Value& value) {
        text_ += (text_.size() > 1 ? ", " : "") + std::string(name) + ": " + Text(value);
        return *this;
    }
    Fields& Raw(const char* name, const std::string& text) {
        text_ += (text_.size() > 1 ? ", " : "") + std::string(name) + ": " + text;
        return *this;
    }
    std::string Close() const { return text_ + "}"; }

private:
    std::string text_ = "{";
};

std::string RecordText(const Track& t) {
    return Fields()("TrackId", t.TrackId)("TrackOrdinal", t.TrackOrdinal)("AutomationMode", t.AutomationMode)(
               "Volume", t.Volume)("BusId", t.BusId)("OutputBusId", t.OutputBusId)("Muted", t.Muted)(
               "Soloed", t.Soloed)("Pan", t.Pan)("TrackHeight", t.TrackHeight)("RackPostFader", t.RackPostFader)(
               "PhaseInverted", t.PhaseInverted)("TrackName", t.TrackName)
        .Close();
}

std::string RecordText(const Clip& c) {
    return Fields()("ClipId", c.ClipId)("FileId", c.FileId)("SourceStart", c.SourceStart)("Start", c.Start)(
               "Length", c.Length)("TrackId", c.TrackId)("TrackOrdinal", c.TrackOrdinal)("FileKind", c.FileKind)(
               "Looped", c.Looped)("Muted", c.Muted)("Locked", c.Locked)("Gain", c.Gain)("Hue", c.Hue)(
               "GroupId", c.GroupId)
        .Close();
}

std::string RecordText(const SessionFile& f) {
    return Fields()("LengthSamples", f.LengthSamples)("FileId", f.FileId)("Kind", f.Kind)("Path", f.Path).Close();
}

std::string RecordText(const CueMarker& m) {
    return Fields()("Length", m.Length)("Start", m.Start)("Comment", m.Comment)("Name", m.Name).Close();
}

std::string RecordText(const ClipFade& f) {
    return Fields()("ClipId", f.ClipId)("FadeInLength", f.FadeInLength)("FadeInShape", f.FadeInShape)(
               "FadeInType", f.FadeInType)("FadeOutLength", f.FadeOutLength)("FadeOutShape", f.FadeOutShape)(
               "FadeOutType", f.FadeOutType)
        .Close();
}

std::string RecordText(const ClipPoint& p) {
    return Fields()("ClipId", p.ClipId)("Kind", p.Kind)("Offset", p.Offset)("Value", p.Value)("TrackId", p.TrackId)
        .Close();
}

std::string RecordText(const ClipGroup& g) { return Fields()("Hue", g.Hue)("GroupId", g.GroupId).Close(); }

std::string RecordText(const ClipStretch& s) {
    return Fields()("ClipId", s.ClipId)("StretchedLength", s.StretchedLength).Close();
}

std::string RecordText(const SesBus& b) {
    return Fields()("Name", b.Name)("GainHigh", b.GainHigh)("GainLow", b.GainLow)("Pan", b.Pan)("BusId", b.BusId)
        .Close();
}

std::string RecordText(const SesCue& c) {
    return Fields()("Name", c.Name)("Comment", c.Comment)("Start", c.Start)("Length", c.Length)("CueType", c.CueType)
        .Close();
}

std::string RecordText(const SesWave& w) {
    return Fields()("WaveId", w.WaveId)("Name", w.Name)("Tag", w.Tag)("LengthSamples", w.LengthSamples).Close();
}

std::string RecordText(const BlockRecord& r) {
    return Fields()("BlockId", r.BlockId)("WaveId", r.WaveId)("LeftGain", r.LeftGain)("RightGain", r.RightGain)(
               "Start", r.Start)("Length", r.Length)("SourceStart", r.SourceStart)("Flags", r.Flags)(
               "TrackId", r.TrackId)("GroupId", r.GroupId)("Hue", r.Hue)
        .Close();
}

std::string RecordText(const Bk25Fade& f) {
    return Fields()("FadeInLength", f.FadeInLength)("FadeOutLength", f.FadeOutLength)("FadeInShape", f.FadeInShape)(
               "FadeOutShape", f.FadeOutShape)("FadeInType", f.FadeInType)("FadeOutType", f.FadeOutType)
        .Close();
}

std::string RecordText(const Blk2Record& r) { return Fields()("BlockId", r.BlockId)("Hue", r.Hue).Close(); }

std::string RecordText(const SesTrack& t) {
    return Fields()("Name", t.Name)("TrackId", t.TrackId)("GainHigh", t.GainHigh)("GainLow", t.GainLow)(
               "StateCode", t.StateCode)("SoloCode", t.SoloCode)("Pan", t.Pan)("BusId", t.BusId)(
               "OutputBusId", t.OutputBusId)("TrackHeight", t.TrackHeight)("PhaseInverted", t.PhaseInverted)(
               "RackPostFader", t.RackPostFader)("AutomationMode", t.AutomationMode)
        .Close();
}

std::string RecordText(const TrackPoint& p) {
    return Fields()("TrackId", p.TrackId)("SampleOffset", p.SampleOffset)("Value", p.Value).Close();
}

std::string RecordText(const NamedAutomationPoint& p) {
    return Fields()("TrackId", p.TrackId)("SampleOffset", p.SampleOffset)("Value", p.Value)("SendSlot", p.SendSlot)(
               "ParameterName", p.ParameterName)
        .Close();
}

std::string RecordText(const SendSlotSettings& s) {
    return Fields()("OutputBus", s.OutputBus)("Level", s.Level)("Pan", s.Pan)("PreFader", s.PreFader).Close();
}

std::string RecordText(const TrackSend& s) {
    std::string slots = "[";
    for (std::size_t k = 0; k < s.Slots.size(); ++k) {
        if (s.Slots[k] == SendSlotSettings{}) continue;
        slots += (slots.size() > 1 ? ", " : "") + std::to_string(k) + ": " + RecordText(s.Slots[k]);
    }
    return Fields()("TrackId", s.TrackId).Raw("Slots", slots + "]").Close();
}

std::string RecordText(const TrackEq& e) {
    return Fields()("TrackKey", e.TrackKey)("LowFrequency", e.LowFrequency)("LowGain", e.LowGain)(
               "HighFrequency", e.HighFrequency)("HighGain", e.HighGain)("MidFrequency", e.MidFrequency)(
               "MidGain", e.MidGain)("MidQ", e.MidQ)("LowQ", e.LowQ)("HighQ", e.HighQ)("EqEnabled", e.EqEnabled)
        .Close();
}

std::string RecordText(const EnvelopePoint& p) {
    return Fields()("ClipId", p.ClipId)("Kind", p.Kind)("SamplePosition", p.SamplePosition)("Value", p.Value)
        .Close();
}

std::string RecordText(const RackSlot& r) {
    return Fields()("OwnerId", r.OwnerId)("EffectName", r.EffectName)("ComponentId", r.ComponentId)(
               "EditorHeight", r.EditorHeight)("EditorLeft", r.EditorLeft)("EditorTop", r.EditorTop)(
               "EditorWidth", r.EditorWidth)("SlotNumber", r.SlotNumber)("PresetText", r.PresetText)
        .Close();
}

std::string RecordText(const RackParameter& r) {
    return Fields()("OwnerId", r.OwnerId)("EffectName", r.EffectName)("ParameterIndex", r.ParameterIndex)(
               "ParameterName", r.ParameterName)("SesParameterName", r.SesParameterName)(
               "ValueExpression", r.ValueExpression)("Value", r.Value)("ValueFormat", r.ValueFormat)(
               "SlotNumber", r.SlotNumber)
        .Close();
}

std::string RecordText(const EffectAutomationPoint& p) {
    return Fields()("TrackId", p.TrackId)("SampleOffset", p.SampleOffset)("Value", p.Value)(
               "SlotNumber", p.SlotNumber)("SlotRow", p.SlotRow)("ParameterName", p.ParameterName)
        .Close();
}

class Dump {
public:
    template <class Value>
    void Scalar(const char* name, const Value& value) {
        text_ += std::string(name) + ": " + Text(value) + "\n";
    }
    template <class Record>
    void List(const char* name, const std::vector<Record>& records) {
        if (records.empty()) text_ += std::string(name) + ": []\n";
        for (std::size_t i = 0; i < records.size(); ++i)
            text_ += std::string(name) + "[" + std::to_string(i) + "]: " + RecordText(records[i]) + "\n";
    }
    std::string Take() { return std::move(text_); }

private:
    std::string text_;
};

}  // namespace

std::string DumpSession(const Session& s) {
    Dump d;
    d.Scalar("SesVersion", s.SesVersion);
    d.Scalar("VersionRead", s.VersionRead);
    d.Scalar("SampleRate", s.SampleRate);
    d.Scalar("SmpteStart", s.SmpteStart);
    d.Scalar("MasterVolume", s.MasterVolume);
    d.Scalar("EnvelopeGainScale", s.EnvelopeGainScale);
    d.Scalar("TimeFormat", s.TimeFormat);
    d.Scalar("SelectionStart", s.SelectionStart);
    d.Scalar("SelectionEnd", s.SelectionEnd);
    d.Scalar("Tempo", s.Tempo);
    d.Scalar("BeatsPerBar", s.BeatsPerBar);
    d.Scalar("Subdivisions", s.Subdivisions);
    d.Scalar("NoteLength", s.NoteLength);
    d.Scalar("MetronomeSoundSet", s.MetronomeSoundSet);
    d.Scalar("MetronomeEnabled", s.MetronomeEnabled);
    d.Scalar("MetronomePattern", s.MetronomePattern);
    d.Scalar("SourcePath", s.SourcePath);
    d.Scalar("VideoSeen", s.VideoSeen);
    d.Scalar("BeatsPerBarText", s.BeatsPerBarText);
    d.Scalar("TempoText", s.TempoText);
    d.Scalar("SubdivisionsText", s.SubdivisionsText);
    d.Scalar("NoteLengthText", s.NoteLengthText);

    d.List("Tracks", s.Tracks);
    d.List("Clips", s.Clips);
    d.List("SessionFiles", s.SessionFiles);
    d.List("CueMarkers", s.CueMarkers);
    d.List("ClipFades", s.ClipFades);
    d.List("ClipPoints", s.ClipPoints);
    d.List("ClipGroups", s.ClipGroups);
    d.List("ClipStretches", s.ClipStretches);
    d.List("SesBuses", s.SesBuses);

    d.List("SesCues", s.SesCues);
    d.List("SesWaves", s.SesWaves);
    d.List("Bk25Records", s.Bk25Records);
    d.List("Bk25Fades", s.Bk25Fades);
    d.List("Bk20Records", s.Bk20Records);
    d.List("BlkRecords", s.BlkRecords);
    d.List("Blk2Records", s.Blk2Records);
    d.List("SesTracks", s.SesTracks);
    d.List("TrackVolumePoints", s.TrackVolumePoints);
    d.List("TrackPanPoints", s.TrackPanPoints);
    d.List("TrackMutePoints", s.TrackMutePoints);
    d.List("SendAutomation", s.SendAutomation);
    d.List("RackAutomation", s.RackAutomation);
    d.List("TrackSends", s.TrackSends);
    d.List("TrackEqs", s.TrackEqs);
    d.List("EnvelopePoints", s.EnvelopePoints);
    d.List("RackSlots", s.RackSlots);
    d.List("RackParameters", s.RackParameters);
    d.List("EffectAutomation", s.EffectAutomation);
    return d.Take();
}

}  // namespace morvanta
