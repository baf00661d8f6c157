#include "net/addresses.h"

namespace tonadex::net {
namespace {

// path?key=value
std::string Query(std::string_view path, std::string_view key, std::string_view value) {
  std::string address(path);
  address += '?';
  address += key;
  address += '=';
  address += value;
  return address;
}

}  // namespace

std::string SearchAddress(std::string_view words) {
  return Query(kSearchPath, kSearchKey, words);
}

std::string StartPageAddress(std::string_view version) {
  return Query(kStartPagePath, kVersionKey, version);
}

std::string MelodyAddress(std::string_view fileName) {
  return std::string(kMelodyFolderPath) + std::string(fileName);
}

std::string UploadAddress(std::string_view fileName, std::string_view contents) {
  return Query(kUploadPath, kUploadNameKey, fileName) + "&" + std::string(kUploadContentsKey) +
         "=" + std::string(contents);
}

}  // namespace tonadex::net
