#include "EffectPayloads.h"

#include "SessionPayloads.h"

namespace morvanta::testing {
namespace {

constexpr std::size_t kSpare = 6;

Bytes WithLength(const Bytes& body) {
    return Bytes().Int32(static_cast<std::int32_t>(body.Size())).Append(body);
}

std::u16string Wide(const std::string& text) { return std::u16string(text.begin(), text.end()); }

// A name one byte a character with zero bytes between, ended by two zeros.
Bytes SpacedName(const std::string& name) {
    Bytes b;
    for (char c : name) b.Byte(static_cast<std::uint8_t>(c)).Byte(0);
    return b.Byte(0);
}

Bytes CountedBytes(const std::string& text) { return Bytes().Int32(static_cast<std::int32_t>(text.size())).Text(text); }

// The path as the bus chunks store it: the part behind the backslash twice as long.
std::string DoubledPath(const std::string& path) {
    const auto slash = path.find('\\');
    if (slash == std::string::npos) return path;
    return path + std::string(path.size() - slash - 1, '~');
}

Bytes EffectParameter(const EffectParameterRecord& p) {
    Bytes body;  // from D
    body.Zeros(26).Append(SpacedName(p.Name)).PadTo(306).Int32(static_cast<std::int32_t>(p.Points.size()));
    for (const AutomationSample& point : p.Points) body.Int32(point.SampleOffset).Zeros(4).Double(point.Value);
    body.Zeros(kSpare).Double(p.Value);
    return CountedText(u"Parameter").Append(WithLength(body));
}

}  // namespace

Bytes EffectListBytes(const std::vector<EffectListEntry>& entries) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(entries.size()));
    for (const EffectListEntry& e : entries) {
        const std::u16string named = e.Folder.empty() ? e.Name : e.Folder + u"\\" + e.Name;
        Bytes body;  // from A
        body.Zeros(28).Append(CountedText(named + std::u16string(named.size(), u'#')));
        body.Append(CountedText(Wide(e.PresetHex)));
        body.Int32(0).Zeros(12).Append(CountedText(u"Params")).Int32(0);
        body.Int32(static_cast<std::int32_t>(e.Parameters.size()));
        for (const EffectParameterRecord& p : e.Parameters) body.Append(EffectParameter(p));
        b.Append(CountedText(u"Effect")).Append(WithLength(body.Zeros(kSpare)));
    }
    return b;
}

Bytes TkfxPayload(const std::vector<TrackRack>& racks) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(racks.size()));
    for (const TrackRack& rack : racks) {
        Bytes body;  // from B + 12
        body.Append(CountedBytes("rack")).Zeros(40).Int32(static_cast<std::int32_t>(rack.Effects.size()));
        body.Append(CountedBytes("list"));
        for (const RackEffect& e : rack.Effects) body.Append(CountedBytes(e.Path + std::string(1, '\0'))).Append(CountedBytes(e.Values));
        body.Zeros(26 * rack.Effects.size() + kSpare);
        // BodyLength counts from B + 24.
        b.Int32(rack.TrackNumber).Int32(0).Int32(static_cast<std::int32_t>(body.Size() + 12 - 24)).Append(body);
    }
    return b;
}

Bytes WideBusPayload(const std::vector<BusRecord>& buses) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(buses.size()));
    for (const BusRecord& bus : buses) {
        Bytes rack;  // from K + 4
        rack.Append(CountedText(u"Rack"));
        for (const RackEffect& e : bus.Effects)
            rack.Zeros(16).Append(CountedText(Wide(DoubledPath(e.Path)))).Append(CountedText(Wide(e.Values)));
        Bytes record;  // from R
        record.Append(CountedText(Wide(bus.Name))).Zeros(16).Double(bus.GainHigh).Double(bus.GainLow);
        record.Int32(static_cast<std::int32_t>(bus.Effects.size())).Int32(static_cast<std::int32_t>(rack.Size() + 4));
        record.Int32(0).Append(rack).Zeros(kSpare);
        b.Append(WithLength(record));
    }
    return b;
}

Bytes NarrowBusPayload(const std::vector<BusRecord>& buses) {
    Bytes b;
    b.Int32(static_cast<std::int32_t>(buses.size()));
    for (const BusRecord& bus : buses) {
        Bytes record;  // from R
        record.Append(CountedBytes(bus.Name)).Zeros(16).Double(bus.GainHigh).Double(bus.GainLow).Zeros(8);
        record.Int32(static_cast<std::int32_t>(bus.Effects.size())).Append(CountedBytes("rack"));
        for (const RackEffect& e : bus.Effects) record.Append(CountedBytes(DoubledPath(e.Path))).Append(CountedBytes(e.Values));
        b.Append(WithLength(record.Zeros(kSpare)));
    }
    return b;
}

std::vector<std::uint8_t> EffectsSession(const std::string& version) {
    TrackEntry vocal = NamedEntry(1, u"Vocal");
    vocal.EffectList = EffectListBytes({
        {.Name = u"Parametric Equalizer",
         .Parameters = {{"Low Shelf Cutoff", {}, 0.5}, {"Band 1 Width", {{0, 50}, {100, 60}}, 50}, {"Master Gain", {}, 0}}},
        {.Name = u"Reverb", .Parameters = {{"Decay", {}, 0.5}}},
        {.Name = u"Warm Tape", .Folder = u"VST", .PresetHex = "48656C6C6F"},
        {.Name = u"Channel Mixer", .Parameters = {{"Gain Left to Left", {}, 0.25}, {"Gain Right to Left", {}, 0.75}}},
    });
    TrackEntry guitar = NamedEntry(2, u"Guitar");
    guitar.EffectList = EffectListBytes({
        {.Name = u"Graphic Equalizer", .Parameters = {{"Number of Bands", {}, 0.1}, {"Band 1", {}, 0.7}, {"Band 12", {}, 0.9}}},
        {.Name = u"Dynamics Processing",
         .Parameters = {{"Level Detector - Attack Time", {}, 0.123456789},
                        {"Number of X/Y Pairs", {}, 0.0507805},
                        {"Low Cutoff", {{0, 0.1}, {4410, 0.3}}, -0.2}}},
    });
    TrackEntry bus = NamedEntry(20001, u"Reverb bus");
    bus.BusId = 20001;
    bus.EffectList = EffectListBytes({{.Name = u"Channel Mixer", .Parameters = {{"Gain Right to Left", {}, 0.1}}}});
    return SesBuilder()
        .Chunk("hdr ", HeaderBytes(44100))
        .Version(version, 32)
        .Chunk("TRKS", UpperTrksPayload(version != "Audition 1.5", 3, {TrackEntryBytes(vocal), TrackEntryBytes(guitar), TrackEntryBytes(bus)}))
        .Build();
}

std::vector<std::uint8_t> OlderEffectsSession() {
    TrksRecord drums{.Name = "Drums", .TrackId = 1};
    TrksRecord keys{.Name = "Keys", .TrackId = 2};
    return SesBuilder()
        .Chunk("hdr ", HeaderBytes(44100))
        .Version("Cool Edit Pro 2.1", 32)
        .Chunk("trks", TrksPayload(104, false, {drums, keys}))
        .Chunk("tkfx", TkfxPayload({{1,
                                     {{"Effects\\Amplify", "1,0.5,"},
                                      {"Effects\\Channel Mixer", std::string("-1,1,0,0.5,-0.5\0", 16)},
                                      {"Effects\\Old Chorus", "0A0B0C"},
                                      {"Effects\\Unknown", "1,"},
                                      {"Effects\\..\\Amplify", "1,"}}},
                                    {2, {{"Amplify", "0.25,0.5"}}}}))
        .Chunk("BUSS", WideBusPayload({{"Reverb bus", 0.5, 0.25,
                                        {{"Effects\\Amplify", "0.8,0.5"}, {"Effects\\Unknown", "1"},
                                         {"Effects\\Amplify", "0.3,0.3"}}}}))
        .Chunk("buss", NarrowBusPayload({{"Renamed", 0.7, 0.6, {}}, {"Narrow bus", 1, 1, {{"FX\\Amplify", "2,4,"}}}}))
        .Build();
}

}  // namespace morvanta::testing
