#pragma once

#include <array>

// All SQL statements. Texts in the database are UTF-8; each Windows-1252 byte maps to a different
// character, so texts are equal exactly when their bytes are.
namespace tonadex::server::sql {

// Appended to the database's URI: time-outs of a hanging connection, durability of commits, and
// limits of statements, which the database enforces so that it does not go on with abandoned ones.
inline constexpr const char* kSessionParameters =
    "client_encoding=UTF8&fallback_application_name=tonadex-server&connect_timeout=2"
    "&keepalives_idle=30&keepalives_interval=5&keepalives_count=3&tcp_user_timeout=8000"
    "&options=-c%20statement_timeout%3D5000%20-c%20idle_in_transaction_session_timeout%3D5000"
    "%20-c%20synchronous_commit%3Don";

// Step n upgrades the schema from version n - 1 to n. Steps are added, never changed.
inline constexpr std::array kUpgrades = {
    // "position" is 1 for the oldest melody. "stem" and "number" are the parts of its file name.
    // tonadex_state has one row, which is locked to add melodies, so that positions are in the
    // order of the commits and without gaps.
    R"sql(
CREATE TABLE tonadex_melody (
  position bigint PRIMARY KEY,
  stem text COLLATE "C" NOT NULL,
  number integer NOT NULL,
  description text COLLATE "C" NOT NULL,
  searched_name text COLLATE "C" NOT NULL,
  contents bytea NOT NULL,
  UNIQUE (stem, number));
CREATE TABLE tonadex_state (
  last_position bigint NOT NULL,
  melodies bigint NOT NULL,
  deletions bigint NOT NULL);
INSERT INTO tonadex_state VALUES (0, 0, 0);
CREATE FUNCTION tonadex_count_deletions() RETURNS trigger LANGUAGE plpgsql AS $$
BEGIN
  UPDATE tonadex_state SET deletions = deletions + 1,
    melodies = melodies - (SELECT count(*) FROM deleted);
  RETURN NULL;
END $$;
CREATE TRIGGER tonadex_deletions AFTER DELETE ON tonadex_melody
  REFERENCING OLD TABLE AS deleted
  FOR EACH STATEMENT EXECUTE FUNCTION tonadex_count_deletions();
)sql",
    R"sql(
CREATE EXTENSION IF NOT EXISTS pg_trgm;
CREATE INDEX tonadex_searched_name ON tonadex_melody USING gin (searched_name gin_trgm_ops);
)sql",
};

inline constexpr const char* kHasVersion = "SELECT to_regclass('tonadex_version') IS NOT NULL";
inline constexpr const char* kVersion = "SELECT max(version) FROM tonadex_version";
inline constexpr const char* kEncoding = "SHOW server_encoding";
// Held until the end of the transaction. Any number that is the same in every server.
inline constexpr const char* kLockUpgrade =
    "SET LOCAL statement_timeout = 0; SELECT pg_advisory_xact_lock(8426061914)";
inline constexpr const char* kMakeVersion =
    "CREATE TABLE IF NOT EXISTS tonadex_version (version integer NOT NULL)";
inline constexpr const char* kSetVersion = "INSERT INTO tonadex_version VALUES ($1)";

inline constexpr const char* kAlive = "SELECT 1";
inline constexpr const char* kState =
    "SELECT last_position, melodies, deletions FROM tonadex_state";
inline constexpr const char* kLockState = "SELECT last_position FROM tonadex_state FOR UPDATE";
inline constexpr const char* kSetState =
    "UPDATE tonadex_state SET last_position = last_position + $1, melodies = melodies + $1";
inline constexpr const char* kInsert =
    "INSERT INTO tonadex_melody VALUES ($1, $2, $3, $4, $5, $6) ON CONFLICT (stem, number) DO "
    "NOTHING";
inline constexpr const char* kContents =
    "SELECT contents FROM tonadex_melody WHERE stem = $1 AND number = $2";

// The columns of every listing, from which records are made.
#define TONADEX_RECORDS "SELECT description, stem, number, position FROM tonadex_melody "
inline constexpr const char* kSearch = TONADEX_RECORDS "WHERE true";
inline constexpr const char* kSearchWord = " AND searched_name LIKE ";  // followed by a parameter
inline constexpr const char* kSearchEnd = " ORDER BY position DESC LIMIT $1";
inline constexpr const char* kAfter =
    TONADEX_RECORDS "WHERE position > $1 ORDER BY position LIMIT $2";
inline constexpr const char* kAt = TONADEX_RECORDS
    "WHERE position = ANY($1::bigint[]) ORDER BY array_position($1::bigint[], position) LIMIT $2";
inline constexpr const char* kAnywhere = TONADEX_RECORDS "ORDER BY random() LIMIT $1";
#undef TONADEX_RECORDS

}  // namespace tonadex::server::sql
