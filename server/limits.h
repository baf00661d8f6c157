#pragma once

#include <cstddef>
#include <cstdint>

// Every limit of the server, its unit in its name.
namespace tonadex::server {

// Requests.
inline constexpr std::size_t kMaxRequestLineBytes = std::size_t{64} << 10;
inline constexpr std::size_t kMaxFieldBytes = std::size_t{16} << 10;  // all header fields together
inline constexpr std::size_t kMaxBodyBytes = std::size_t{256} << 10;  // of a POST
inline constexpr int kSlowClientMs = 10'000;  // for a request to arrive, a slice to be taken
inline constexpr int kLingerMs = 1'000;       // for a client to read a refusal
inline constexpr std::size_t kMaxLingerBytes = std::size_t{1} << 20;
inline constexpr std::size_t kSliceBytes = std::size_t{64}
                                           << 10;  // of a body, for one kSlowClientMs

// Connections.
inline constexpr int kMaxConnections = 512;           // served at the same time
inline constexpr int kMaxConnectionsOfAddress = 100;  // of these, from one address
inline constexpr int kMaxRefusedConnections = 4096;   // being told 503 at the same time
inline constexpr int kAcceptRetryMs = 100;            // after running out of file handles
inline constexpr std::size_t kMaxReplyBytes = std::size_t{256} << 20;  // kept for replies under way
inline constexpr int kStopGraceMs = 3'000;  // for replies under way when the server ends

// Compression of replies to the page and to other programs: smaller ones hardly shrink, larger ones
// would take the processor for more than some 20 ms.
inline constexpr std::size_t kMinCompressedBytes = std::size_t{1} << 10;
inline constexpr std::size_t kMaxCompressedBytes = std::size_t{1} << 20;

// Listings.
inline constexpr std::size_t kMaxSearchRecords = 500;
inline constexpr std::size_t kMaxSearchWords = 16;     // different ones; the rest is not looked for
inline constexpr std::size_t kMaxSearchBytes = 1'024;  // of a query; the rest is not read
inline constexpr std::size_t kRandomRecords = 10;
inline constexpr std::size_t kNewsRecords = 8;
inline constexpr std::size_t kMaxDescriptionBytes = 100;

// Melodies. A file's number has at most five digits, so that clients find it in a record.
inline constexpr std::uint32_t kMaxNumber = 99'999;
inline constexpr std::size_t kMaxFileNameUtf8Bytes = 200;
inline constexpr std::size_t kMaxFileBytes = std::size_t{1} << 20;
inline constexpr std::size_t kNamePrefixBytes = 512;  // read of each file for its name
inline constexpr std::size_t kMaxIndexBytes = std::size_t{1} << 30;  // of the stored index

// Uploads.
inline constexpr int kUploadsPerMinute = 20;  // from one address
inline constexpr std::size_t kMaxRememberedAddresses = 10'000;

// The database. A request that takes one of its statements longer, or finds no connection, gets a
// 503; the longest it can wait is about twice kDatabaseUseMs.
inline constexpr int kDatabaseConnections = 16;       // of one server; half of its threads
inline constexpr int kDatabaseWaitMs = 2'000;         // for one of them
inline constexpr int kDatabaseUseMs = 8'000;          // then the connection is cut
inline constexpr int kDatabaseUpgradeMs = 3'600'000;  // as above, while the schema is made
inline constexpr int kDatabaseRetryMs = 500;          // between attempts while it is away
inline constexpr int kDatabaseWatchMs = 250;          // between looks for connections to be cut
inline constexpr int kMaxCopiedBytes = 1 << 20;       // and melodies in one transaction of a copy
inline constexpr std::size_t kMaxCopiedMelodies = 200;
inline constexpr std::size_t kListingRows = 4'096;  // asked for at once

// Conversions, checks and imports from one address, counted by the work that they make: one for
// every kConversionBytes of the body, begun ones included.
inline constexpr int kConversionsPerMinute = 1'200;
inline constexpr std::size_t kConversionBytes = std::size_t{4} << 10;

// Of a MIDI file, melodies are made of this many voices.
inline constexpr std::size_t kMostVoices = 32;

// The embedded server.
inline constexpr int kGuestPollMs = 500;   // between two looks whether the folder became free
inline constexpr int kPortWaitMs = 2'000;  // for the first program to say where it listens

}  // namespace tonadex::server
