#include "TrackPayloads.h"

namespace morvanta::testing {
namespace {

// Spare bytes at the end of every body with a length of its own.
constexpr std::size_t kSpare = 8;

Bytes Points(const std::vector<AutomationSample>& points) {
    Bytes b;
    for (const AutomationSample& p : points) b.Int32(p.SampleOffset).Int32(0).Double(p.Value);
    return b;
}

// A name in one byte a character with a zero byte behind each, ended by
// two more zero bytes.
Bytes SpacedName(const std::string& name) {
    Bytes b;
    for (char c : name) b.Byte(static_cast<std::uint8_t>(c)).Byte(0);
    return b.Byte(0).Byte(0);
}

// A body that carries its length: int32 length, then the content.
Bytes WithLength(const Bytes& content) {
    return Bytes().Int32(static_cast<std::int32_t>(content.Size())).Append(content);
}

// A track or EQ parameter: a name, a length and 32 bytes of payload, with
// `early` 24 bytes before the end and `last` in the last 8 bytes.
Bytes Parameter(double early, double last) {
    Bytes payload;
    payload.Zeros(8).Double(early).Zeros(8).Double(last);
    return CountedText(u"Param").Append(WithLength(payload));
}

// The head of the first two sections and of the rack block: 32 bytes, a
// text, an int32 and the parameter count.
Bytes ParameterListHead(std::int32_t count) {
    return Bytes().Zeros(32).Append(CountedText(u"List")).Int32(0).Int32(count);
}

Bytes Section(const std::u16string& name, const Bytes& content) {
    return CountedText(name).Append(WithLength(Bytes().Append(content).Zeros(kSpare)));
}

Bytes TrackParameterSection(double phase) {
    Bytes content = ParameterListHead(3);
    content.Append(Parameter(0, 0)).Append(Parameter(phase, 7.0)).Append(Parameter(0, 0));
    return Section(u"Track", content);
}

Bytes EqSection(const std::vector<double>& values) {
    Bytes content = ParameterListHead(static_cast<std::int32_t>(values.size()));
    // The early double holds a decoy: EQ values are the last 8 bytes.
    for (double value : values) content.Append(Parameter(99.0, value));
    return Section(u"EQ", content);
}

// Volume: the count at 412 behind the name, the points at 416.
Bytes VolumeSection(const TrackEntry& e) {
    Bytes content;
    content.Zeros(412 - 4).Int32(e.VolumeCountOverride.value_or(static_cast<std::int32_t>(e.Volume.size())));
    return Section(u"Volume", content.Append(Points(e.Volume)));
}

// Mute: the count at 770, the points at 774; or a count above 250 at 770,
// the real count at 786 and the points at 790.
Bytes MuteSection(const TrackEntry& e) {
    Bytes content;
    content.Zeros(770 - 4);
    const auto count = static_cast<std::int32_t>(e.Mute.size());
    if (e.MuteCountAbove250) content.Int32(*e.MuteCountAbove250).Zeros(786 - 774).Int32(count);
    else content.Int32(count);
    return Section(u"Mute", content.Append(Points(e.Mute)));
}

// Lanes behind the fifth section: 32 bytes, a text, an int32, the count;
// the fourth lane has its point count at 310 of its body, the points at 314.
Bytes Lanes(const TrackEntry& e) {
    Bytes b;
    b.Zeros(32).Append(CountedText(u"Automation")).Int32(0);
    b.Int32(e.LaneCountOverride.value_or(e.LaneCount));
    for (int lane = 1; lane <= e.LaneCount; ++lane) {
        Bytes content;
        if (lane == 4) {
            content.Zeros(310 - 4).Int32(static_cast<std::int32_t>(e.Pan.size())).Append(Points(e.Pan));
        } else {
            // Other lanes look the same, and are not read.
            content.Zeros(310 - 4).Int32(1).Int32(0).Int32(0).Double(-50.0);
        }
        b.Append(CountedText(u"Lane")).Append(WithLength(content.Zeros(kSpare)));
    }
    return b;
}

// A rack parameter: a text, 10 bytes, a text at M, the length at M2, the
// spaced name at M2 + 8, the point count at M + 300, the points at M + 304.
Bytes RackParameter(const NamedParameter& p) {
    const std::u16string inner = u"Value";
    const std::size_t m = 0;  // offsets counted from M
    const std::size_t m2 = m + 4 + 2 * inner.size();
    Bytes body;  // from M2 + 4
    body.Zeros(4).Append(SpacedName(p.Name));
    body.PadTo(300 - (m2 + 4)).Int32(static_cast<std::int32_t>(p.Points.size())).Append(Points(p.Points));
    body.Zeros(kSpare);
    return CountedText(u"Effect").Zeros(10).Append(CountedText(inner)).Append(WithLength(body));
}

Bytes RackBlock(const TrackEntry& e) {
    Bytes content;  // from X + 4
    content.Append(ParameterListHead(static_cast<std::int32_t>(e.Rack.size())));
    for (const NamedParameter& p : e.Rack) content.Append(RackParameter(p));
    return Bytes().Zeros(16).Append(CountedText(u"Rack")).Append(WithLength(content.Zeros(kSpare)));
}

// A send parameter: a text, the length, then at D: 6 bytes, a text at M
// (D + 6), an int32 at Z, 4 bytes, the spaced name at Z + 8, the point
// count at M + 300, the points, and the value in the last 8 bytes.
Bytes SendParameter(const NamedParameter& p) {
    const std::u16string inner = u"Val";
    Bytes body;  // from D
    body.Zeros(6).Append(CountedText(inner)).Int32(0).Zeros(4).Append(SpacedName(p.Name));
    body.PadTo(6 + 300).Int32(static_cast<std::int32_t>(p.Points.size())).Append(Points(p.Points));
    body.Zeros(kSpare).Double(p.Value);
    return CountedText(u"Parameter").Append(WithLength(body));
}

Bytes Send(const SendEntry& s) {
    Bytes list;  // from A: the count, the parameters, the level in the last 8 bytes
    list.Int32(static_cast<std::int32_t>(s.Parameters.size()));
    for (const NamedParameter& p : s.Parameters) list.Append(SendParameter(p));
    list.Zeros(kSpare).Double(s.Level);
    Bytes b;
    b.Append(CountedText(u"Send")).Int32(0).Zeros(28).Append(CountedText(u"Bus"));
    b.Append(WithLength(list));
    return b.Zeros(12).Int32(s.OutputBus).Int32(s.PreFader);
}

}  // namespace

Bytes CountedText(const std::u16string& text) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(text.size()));
    for (char16_t unit : text) b.Int16(static_cast<std::int16_t>(unit));
    return b;
}

Bytes TkeqPayload(const std::vector<TkeqRecord>& records) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(records.size()));
    for (const TkeqRecord& r : records) {
        b.Int32(r.TrackKey).Int32(0);
        b.Double(r.LowFrequency).Double(r.LowGain).Double(r.HighFrequency).Double(r.HighGain);
        b.Double(r.MidFrequency).Double(r.MidQ).Double(r.MidGain).Double(r.LowQ).Double(r.HighQ);
        b.Int32(0).Int32(0);
    }
    return b;
}

Bytes Ep20Payload(const std::vector<Ep20Group>& groups) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(groups.size()));
    for (const Ep20Group& g : groups) {
        b.Int32(0).Int32(0).Int32(g.ClipId).Int32(static_cast<std::int32_t>(g.Lanes.size()));
        for (const Ep20Lane& lane : g.Lanes) {
            b.Int32(static_cast<std::int32_t>(lane.Points.size())).Int32(lane.Kind).Int32(0);
            for (const EnvelopeSample& p : lane.Points) b.Int32(p.Position).Double(p.Value);
        }
    }
    return b;
}

Bytes EnvpPayload(const std::vector<EnvpGroup>& groups) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(groups.size()));
    for (const EnvpGroup& g : groups) {
        b.Int32(0).Int32(g.ClipId);
        b.Int32(static_cast<std::int32_t>(g.Volume.size())).Int32(static_cast<std::int32_t>(g.Pan.size()));
        for (const EnvelopeSample& p : g.Volume) b.Int32(p.Position).Int32(0).Double(p.Value).Zeros(8);
        for (const EnvelopeSample& p : g.Pan) b.Int32(p.Position).Int32(0).Double(p.Value).Zeros(8);
    }
    return b;
}

Bytes TrksPayload(int recordSize, bool secondHeaderField, const std::vector<TrksRecord>& records) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(records.size()));
    if (secondHeaderField) b.Int32(0);
    for (const TrksRecord& r : records) {
        Bytes record;
        record.Double(r.Left).Double(r.Right).Int32(r.StateCode).ZeroText(r.Name);
        if (recordSize >= 104) {
            record.PadTo(56).Int32(r.IdAt56);
            record.PadTo(93).Byte(r.OutputByte).Zeros(2).Int32(r.TrackId);
        }
        b.Append(record.PadTo(static_cast<std::size_t>(recordSize)));
    }
    return b;
}

Bytes TrackEntryBytes(const TrackEntry& e) {
    Bytes record;  // from Q + 4: everything RecordLength covers
    record.Int32(e.TrackId).Append(CountedText(e.Name));
    // 48 bytes from S.
    record.Byte(e.SoloByte).Zeros(3).Byte(e.StateByte).Zeros(5).Byte(e.Height).Zeros(17);
    record.Int32(e.BusId).Int32(e.AutomationMode).Zeros(12);
    // From E: four texts with two int32 between, then five int32.
    record.Append(CountedText(u"Input")).Int32(0).Append(CountedText(u"Out")).Append(CountedText(u"Group"));
    record.Int32(e.OutputBusId).Append(CountedText(u"Folder"));
    record.Int32(0).Int32(e.RackPostFader).Int32(0).Int32(0).Int32(0);
    record.Append(TrackParameterSection(e.Phase)).Append(EqSection(e.Eq));
    record.Append(VolumeSection(e)).Append(MuteSection(e)).Append(CountedText(u"End"));
    record.Append(Lanes(e)).Append(RackBlock(e));
    record.Int32(static_cast<std::int32_t>(e.Sends.size()));
    for (const SendEntry& s : e.Sends) record.Append(Send(s));
    record.Append(e.EffectList);

    Bytes entry;
    entry.Int32(0).Int32(e.Marker).Zeros(22);
    entry.Int32(e.RecordLengthOverride.value_or(static_cast<std::int32_t>(record.Size())));
    return entry.Append(record);
}

Bytes MarkerEntryBytes(std::int32_t marker, const std::u16string& name) {
    return Bytes().Int32(0).Int32(marker).Append(CountedText(name)).Zeros(12);
}

Bytes UpperTrksPayload(bool secondHeaderField, std::int32_t entryCount, const std::vector<Bytes>& entries) {
    Bytes b;
    b.Int32(entryCount);
    if (secondHeaderField) b.Int32(0);
    for (const Bytes& entry : entries) b.Append(entry);
    return b;
}

std::vector<std::uint8_t> TracksExampleSession() {
    TrackEntry drums = NamedEntry(1, u"Drums");
    drums.Height = 90;
    drums.Volume = {{0, 1.0}, {44100, 0.5}, {88200, 0.25}};
    drums.Pan = {{0, -100.0}, {22050, 50.0}};
    drums.Eq = {1, 120.0, 6.0, 150.0, 0, 1000.0, -3.0, 200.0, 8000.0, 12.0, 100.0, 0};
    drums.Rack = {AutomatedParameter("Mix", {{0, 0.5}, {100, 1.0 / 3.0}})};

    TrackEntry bass = NamedEntry(2, u"Bass & Sub");
    bass.StateByte = 1;
    bass.OutputBusId = 20001;
    bass.Mute = {{0, 1.0}, {1000, 0.3}, {2000, 0.0}};
    SendEntry send;
    send.OutputBus = 20001;
    send.Level = 0.5;
    send.PreFader = 1;
    send.Parameters = {AutomatedParameter("Level", {{0, 1.0}, {500, 0.5}}),
                       AutomatedParameter("Pan", {{0, 100.0}, {500, -20.0}}, -20.0)};
    bass.Sends = {send};

    TrackEntry keys = NamedEntry(3, u"Keys");
    keys.SoloByte = 1;
    keys.Height = 120;
    keys.AutomationMode = 3;
    keys.Phase = 1.0;
    keys.Volume = {{0, 0.8}};

    TrackEntry bus = NamedEntry(4, u"Reverb Bus");
    bus.Height = 70;
    bus.BusId = 20001;
    bus.EffectList = Bytes().Int32(2).Zeros(40);

    TrackEntry master = NamedEntry(10000, u"Master");
    master.Height = 48;
    master.Volume = {{0, 0.7}};

    // The video entry takes the drums behind it; the skipped entry yields
    // nothing; seven entries in all.
    const Bytes payload = UpperTrksPayload(true, 7,
                                           {MarkerEntryBytes(490000, u"Clip.avi"), TrackEntryBytes(drums),
                                            TrackEntryBytes(bass), MarkerEntryBytes(255000, u"Marker"),
                                            TrackEntryBytes(keys), TrackEntryBytes(bus), TrackEntryBytes(master)});
    return SesBuilder().Version("Audition 3.0", 32).Chunk("TRKS", payload).Build();
}

std::vector<std::uint8_t> AbsurdPointCountSession() {
    TrackEntry entry = NamedEntry(1, u"Drums");
    entry.VolumeCountOverride = 0x7FFFFFFF;
    return SesBuilder()
        .Version("Audition 3.0", 32)
        .Chunk("TRKS", UpperTrksPayload(true, 1, {TrackEntryBytes(entry)}))
        .Build();
}

std::vector<NamedFile> TrackFuzzSeeds() {
    TrksRecord vocal;
    vocal.Left = 0.5;
    vocal.Name = "Vocal";
    vocal.TrackId = 1;
    TrksRecord guitar;
    guitar.Right = 0.7;
    guitar.Name = "Guitar";
    guitar.OutputByte = 2;
    guitar.TrackId = 2;
    TkeqRecord eq;
    eq.TrackKey = 2;
    eq.LowFrequency = 100;
    eq.MidFrequency = 1000;
    eq.MidQ = 200;
    eq.HighFrequency = 8000;
    const auto older = SesBuilder()
                           .Version("Audition 1.0", 32)
                           .Chunk("trks", TrksPayload(104, false, {vocal, guitar}))
                           .Chunk("tkeq", TkeqPayload({eq}))
                           .Chunk("ep20", Ep20Payload({{300000001, {{1, {{0, 0.5}, {100, 1.0}}}, {2, {{0, 0.25}}}}}}))
                           .Chunk("envp", EnvpPayload({{300000002, {{0, 1.0}}, {{0, 0.5}}}}))
                           .Build();
    return {{"tracks-audition-3.0.ses", TracksExampleSession()},
            {"tracks-audition-1.0.ses", older},
            {"absurd-point-count.ses", AbsurdPointCountSession()}};
}

TrackEntry NamedEntry(std::int32_t trackId, const std::u16string& name) {
    TrackEntry entry;
    entry.TrackId = trackId;
    entry.Name = name;
    return entry;
}

NamedParameter AutomatedParameter(const std::string& name, const std::vector<AutomationSample>& points,
                                  double value) {
    NamedParameter parameter;
    parameter.Name = name;
    parameter.Points = points;
    parameter.Value = value;
    return parameter;
}

}  // namespace morvanta::testing
