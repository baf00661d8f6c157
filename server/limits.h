#pragma once

#include <cstddef>
#include <cstdint>

// Every limit of the server, its unit in its name.
namespace tonadex::server {

// Requests.
inline constexpr std::size_t kMaxRequestLineBytes = std::size_t{64} << 10;
inline constexpr std::size_t kMaxFieldBytes = std::size_t{16} << 10;  // all header fields together
inline constexpr std::size_t kMaxBodyBytes = std::size_t{256} << 10;  // of a POST
inline constexpr int kSlowClientMs = 10'000;  // for a request, or a slice of a body or reply
inline constexpr int kLingerMs = 1'000;       // for a client to read a refusal
inline constexpr std::size_t kMaxLingerBytes = std::size_t{1} << 20;
inline constexpr std::size_t kSliceBytes = std::size_t{64}
                                           << 10;  // of a body or reply, per kSlowClientMs

// Connections.
inline constexpr int kMaxConnections = 512;           // open at the same time
inline constexpr int kMaxConnectionsOfAddress = 100;  // of these, per client address
inline constexpr int kMaxRefusedConnections = 4096;   // being answered with a 503
inline constexpr int kAcceptRetryMs = 100;            // after running out of file handles
inline constexpr std::size_t kMaxReplyBytes = std::size_t{256} << 20;  // of replies being sent
inline constexpr int kStopGraceMs = 3'000;  // for running requests when the server ends

// Compression of text replies: smaller ones hardly shrink, larger ones would take more than about
// 20 ms of processor time.
inline constexpr std::size_t kMinCompressedBytes = std::size_t{1} << 10;
inline constexpr std::size_t kMaxCompressedBytes = std::size_t{1} << 20;

// Listings.
inline constexpr std::size_t kMaxSearchRecords = 500;
inline constexpr std::size_t kMaxSearchWords = 16;     // distinct ones; further words are ignored
inline constexpr std::size_t kMaxSearchBytes = 1'024;  // of a query; the rest is ignored
inline constexpr std::size_t kRandomRecords = 10;
inline constexpr std::size_t kNewsRecords = 8;
inline constexpr std::size_t kMaxDescriptionBytes = 100;

// Melodies. Clients find at most five digits of a file's number in a record.
inline constexpr std::uint32_t kMaxNumber = 99'999;
inline constexpr std::size_t kMaxFileNameUtf8Bytes = 200;
inline constexpr std::size_t kMaxFileBytes = std::size_t{1} << 20;
inline constexpr std::size_t kNamePrefixBytes = 512;  // of each file, read for the melody's name
inline constexpr std::size_t kMaxIndexBytes = std::size_t{1} << 30;  // of the stored index file

// Uploads.
inline constexpr int kUploadsPerMinute = 20;  // per client address
inline constexpr std::size_t kMaxRememberedAddresses = 10'000;

// The database. A request whose statement takes longer, or that gets no connection, is answered
// with a 503, after about twice kDatabaseUseMs at the latest.
inline constexpr int kDatabaseConnections = 16;       // per server; it has twice as many threads
inline constexpr int kDatabaseWaitMs = 2'000;         // for a free connection
inline constexpr int kDatabaseUseMs = 8'000;          // for one use; then the connection is closed
inline constexpr int kDatabaseCheckMs = 2'000;        // for the check of /salud
inline constexpr int kDatabaseUpgradeMs = 3'600'000;  // for creating or upgrading the schema
inline constexpr int kDatabaseRetryMs = 500;  // between attempts to connect while it is unreachable
inline constexpr int kDatabaseWatchMs = 250;  // between checks for uses that take too long
inline constexpr int kMaxCopiedBytes = 1 << 20;  // per transaction of a copy
inline constexpr std::size_t kMaxCopiedMelodies = 200;
inline constexpr std::size_t kListingRows = 4'096;  // fetched at a time

// Conversions, checks and imports, per client address. Each counts once, and once more for every
// started kConversionBytes of its body; a sound file, of up to ten minutes, counts as
// kSoundConversions more.
inline constexpr int kConversionsPerMinute = 1'200;
inline constexpr std::size_t kConversionBytes = std::size_t{4} << 10;
inline constexpr std::size_t kSoundConversions = 60;

// Number of voices of a MIDI file that are converted.
inline constexpr std::size_t kMostVoices = 32;

// The embedded server.
inline constexpr int kGuestPollMs = 500;   // between checks whether the folder's lock is free
inline constexpr int kPortWaitMs = 2'000;  // for the host to publish its port

}  // namespace tonadex::server
