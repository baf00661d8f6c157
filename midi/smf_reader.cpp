#include "midi/smf_reader.h"

#include <algorithm>
#include <utility>

#include "core/text.h"
#include "core/windows1252.h"
#include "formats/reading.h"

namespace tonadex::midi {
namespace {

using namespace core::literals;

constexpr std::size_t kMaxName = 60;
constexpr std::size_t kKeys = 128;
constexpr std::uint64_t kMaxTicks = std::uint64_t{1} << 31;
constexpr std::size_t kLeastHeader = 6;  // format, number of tracks, division
constexpr int kMaxDenominatorPower = 6;
constexpr std::string_view kMark = "MThd";
constexpr std::string_view kDamaged = u8"el fichero MIDI está dañado"_w;
constexpr std::size_t kRiffHeader = 20;  // up to the content of the first chunk

enum Meta : std::uint8_t {
  kTrackName = 0x03,
  kInstrumentName = 0x04,
  kLyric = 0x05,
  kEndOfTrack = 0x2F,
  kTempo = 0x51,
  kTimeSignature = 0x58,
};

// Reads bytes and keeps the offset for faults. Reading past the end throws a fault.
class Bytes {
 public:
  Bytes(std::string_view bytes, std::size_t at, std::size_t track)
      : bytes_(bytes), at_(at), track_(track) {}

  void EnterTrack(std::size_t track) { track_ = track; }
  bool AtEnd() const { return bytes_.empty(); }
  std::size_t At() const { return at_; }

  std::string_view Take(std::size_t count) {
    if (count > bytes_.size()) {
      const std::size_t missing = count - bytes_.size();
      Refuse((missing == 1 ? "falta " : "faltan ") + core::Counted(missing, "byte", "bytes"));
    }
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    at_ += count;
    return taken;
  }

  std::uint8_t Byte() { return static_cast<std::uint8_t>(Take(1).front()); }

  std::uint32_t Number(std::size_t size) {
    std::uint32_t number = 0;
    for (const char byte : Take(size)) {
      number = number << 8 | static_cast<std::uint8_t>(byte);
    }
    return number;
  }

  // Variable-length quantity: seven bits per byte, the highest first; all bytes except the last
  // have the high bit set.
  std::uint32_t VariableNumber() {
    const std::size_t start = at_;
    std::uint32_t number = 0;
    for (int left = 4; left > 0; --left) {
      const std::uint8_t byte = Byte();
      number = number << 7 | (byte & 0x7Fu);
      if (byte < 0x80) {
        return number;
      }
    }
    Refuse(u8"un tiempo o un tamaño de más de cuatro bytes"_w, start);
  }

  [[noreturn]] void Refuse(std::string_view what) const { Refuse(what, at_); }
  [[noreturn]] void Refuse(std::string_view what, std::size_t at) const {
    const std::string track = track_ == 0 ? "" : " en la pista " + std::to_string(track_);
    formats::RefuseFile({kDamaged, track, ", byte ", std::to_string(at), ": ", what});
  }

 private:
  std::string_view bytes_;
  std::size_t at_;
  std::size_t track_;
};

// Converts a text event to a name: one line of printable characters.
std::string NameText(std::string_view bytes) {
  std::string text = core::FromOutside(bytes.substr(0, 4 * kMaxName));
  std::ranges::replace_if(
      text, [](char c) { return static_cast<std::uint8_t>(c) < ' ' || c == '\x7F'; }, ' ');
  text = std::string(core::Trim(text));
  text.resize(std::min(text.size(), kMaxName));
  return text;
}

class TrackReader {
 public:
  TrackReader(Bytes bytes, SmfTrack& track) : bytes_(bytes), track_(track) {
    track_.programs.fill(kNoProgram);
    sounding_.fill(kSilent);
  }

  void Read() {
    while (!ended_ && !bytes_.AtEnd()) {
      now_ += bytes_.VariableNumber();
      if (now_ > kMaxTicks) {
        bytes_.Refuse("la pista dura demasiado");
      }
      ReadEvent();
    }
    for (const std::uint32_t note : sounding_) {
      EndNote(note);
    }
    if (track_.name.empty()) {
      track_.name = instrument_;
    }
  }

 private:
  static constexpr std::uint32_t kSilent = UINT32_MAX;

  std::uint32_t Now() const { return static_cast<std::uint32_t>(now_); }

  void ReadEvent() {
    const std::size_t start = bytes_.At();
    const std::uint8_t byte = bytes_.Byte();
    const std::uint8_t status = byte >= 0x80 ? byte : running_;
    if (status == 0) {
      bytes_.Refuse(u8"un dato sin suceso que lo anuncie"_w, start);
    }
    if (status == 0xFF) {
      const std::uint8_t type = bytes_.Byte();
      ReadMeta(type, bytes_.Take(bytes_.VariableNumber()));
    } else if (status == 0xF0 || status == 0xF7) {
      bytes_.Take(bytes_.VariableNumber());
    } else if (status < 0xF0) {
      // Meta and sysex events do not reset the running status, because some makers' files rely on
      // it.
      running_ = status;
      ReadChannelEvent(status, byte >= 0x80 ? DataByte() : byte);
    } else {
      bytes_.Refuse("un suceso que no cabe en un fichero", start);
    }
  }

  std::uint8_t DataByte() {
    const std::size_t at = bytes_.At();
    const std::uint8_t byte = bytes_.Byte();
    if (byte >= 0x80) {
      bytes_.Refuse(u8"un suceso donde tenía que haber un dato"_w, at);
    }
    return byte;
  }

  void ReadChannelEvent(std::uint8_t status, std::uint8_t first) {
    const int kind = status >> 4;
    const auto channel = static_cast<std::uint8_t>(status & 0x0Fu);
    const bool programOrPressure = kind == 0xC || kind == 0xD;
    const std::uint8_t second = programOrPressure ? std::uint8_t{0} : DataByte();
    if (kind == 0x9 || kind == 0x8) {
      std::uint32_t& sounding = sounding_[channel * kKeys + first];
      EndNote(std::exchange(sounding, kSilent));
      if (kind == 0x9 && second > 0) {
        sounding = static_cast<std::uint32_t>(track_.notes.size());
        track_.notes.push_back({Now(), Now(), first, channel, second});
        played_[channel] = true;
      }
    } else if (kind == 0xC && !played_[channel]) {
      track_.programs[channel] = first;
    }
  }

  void EndNote(std::uint32_t note) {
    if (note != kSilent) {
      track_.notes[note].end = Now();
    }
  }

  void ReadMeta(std::uint8_t type, std::string_view data) {
    Bytes values(data, 0, 0);
    if (type == kTrackName && track_.name.empty()) {
      track_.name = NameText(data);
    } else if (type == kInstrumentName && instrument_.empty()) {
      instrument_ = NameText(data);
    } else if (type == kLyric) {
      track_.hasLyrics = true;
    } else if (type == kEndOfTrack) {
      ended_ = true;
    } else if (type == kTempo && data.size() == 3) {
      if (const std::uint32_t microseconds = values.Number(3); microseconds > 0) {
        track_.tempos.push_back({Now(), microseconds});
      }
    } else if (type == kTimeSignature && data.size() >= 2) {
      const int numerator = values.Byte();
      const int power = values.Byte();
      if (numerator > 0 && power <= kMaxDenominatorPower) {
        track_.meters.push_back({Now(), numerator, 1 << power});
      }
    }
  }

  Bytes bytes_;
  SmfTrack& track_;
  std::uint64_t now_ = 0;
  std::uint8_t running_ = 0;
  bool ended_ = false;
  std::array<std::uint32_t, kChannels * kKeys> sounding_{};  // indexes of notes, or kSilent
  std::array<bool, kChannels> played_{};
  std::string instrument_;
};

// SMPTE time: the high byte is the negated number of frames per second, the low byte the ticks per
// frame. 29 means 30 frames in 1.001 seconds. Returns the duration of a quarter note.
std::uint32_t ReadSmpteTime(const Bytes& bytes, std::uint32_t division, SmfFile& file) {
  const std::uint32_t frames = 256 - (division >> 8);
  const std::uint32_t ticks = division & 0xFF;
  if ((frames != 24 && frames != 25 && frames != 29 && frames != 30) || ticks == 0) {
    bytes.Refuse(u8"división de tiempo desconocida"_w, bytes.At() - 2);
  }
  const std::uint32_t second = ticks * (frames == 29 ? 30 : frames);
  const std::uint32_t halves = second % 2 == 0 ? 1 : 2;
  file.smpteTime = true;
  file.division = second * halves / 2;
  return halves * (frames == 29 ? 500500 : 500000);
}

// Reads the header; returns the number of tracks and, for SMPTE time, the duration of a quarter
// note.
struct Header {
  std::uint32_t tracks = 0, microseconds = 0;
};
Header ReadHeader(Bytes& bytes, SmfFile& file) {
  const std::uint32_t size = bytes.Number(4);
  if (size < kLeastHeader) {
    bytes.Refuse("la cabecera es demasiado corta", bytes.At() - 4);
  }
  const std::uint32_t format = bytes.Number(2);
  if (format > 2) {
    bytes.Refuse("el formato " + std::to_string(format) + " no existe", bytes.At() - 2);
  }
  file.format = static_cast<int>(format);
  Header header{.tracks = bytes.Number(2)};
  file.division = bytes.Number(2);
  if (file.division == 0) {
    bytes.Refuse(u8"división de tiempo desconocida"_w, bytes.At() - 2);
  }
  if (file.division >= 0x8000) {
    header.microseconds = ReadSmpteTime(bytes, file.division, file);
  }
  bytes.Take(size - kLeastHeader);
  return header;
}

SmfFile ReadFile(std::string_view content, std::size_t start) {
  Bytes bytes(content, start, 0);
  bytes.Take(kMark.size());
  SmfFile file;
  const Header header = ReadHeader(bytes, file);
  while (file.tracks.size() < header.tracks) {
    if (bytes.AtEnd()) {
      bytes.Refuse("el principio anuncia " + core::Counted(header.tracks, "pista", "pistas") +
                   " y hay " + std::to_string(file.tracks.size()));
    }
    const std::size_t number = file.tracks.size() + 1;
    bytes.EnterTrack(number);
    const std::string_view name = bytes.Take(4);
    const std::uint32_t size = bytes.Number(4);
    const std::size_t at = bytes.At();
    const std::string_view data = bytes.Take(size);
    if (name == "MTrk") {
      TrackReader(Bytes(data, at, number), file.tracks.emplace_back()).Read();
    }
  }
  if (file.smpteTime) {  // tempo events do not apply to SMPTE time
    for (SmfTrack& track : file.tracks) {
      track.tempos = {{0, header.microseconds}};
    }
  }
  return file;
}

// The changes of one kind that apply to a track.
template <typename Change>
std::vector<Change> ChangesFor(const SmfFile& file, std::size_t track,
                               std::vector<Change> SmfTrack::*changes) {
  if (file.format == 2) {
    return file.tracks[track].*changes;
  }
  std::vector<Change> all;
  for (const SmfTrack& each : file.tracks) {
    all.insert(all.end(), (each.*changes).begin(), (each.*changes).end());
  }
  std::ranges::stable_sort(all, {}, &Change::tick);
  return all;
}

}  // namespace

SmfFile ReadSmf(std::string_view bytes) {
  if (bytes.size() > kMaxSmfBytes) {
    formats::RefuseFile({"el fichero MIDI pasa de ", std::to_string(kMaxSmfBytes >> 20), " MB"});
  }
  const bool riff =
      bytes.starts_with("RIFF") && bytes.size() > kRiffHeader && bytes.substr(8, 4) == "RMID";
  const std::size_t start = riff ? kRiffHeader : 0;
  if (!bytes.substr(start).starts_with(kMark)) {
    formats::RefuseFile({u8"no es un fichero MIDI: no empieza por «MThd»"_w});
  }
  return ReadFile(bytes.substr(start), start);
}

std::vector<SmfTempo> TemposFor(const SmfFile& file, std::size_t track) {
  return ChangesFor(file, track, &SmfTrack::tempos);
}

std::vector<SmfMeter> MetersFor(const SmfFile& file, std::size_t track) {
  return ChangesFor(file, track, &SmfTrack::meters);
}

}  // namespace tonadex::midi
