#include "raw_parsers.h"

#include <rapidjson/filereadstream.h>
#include <rapidjson/filewritestream.h>
#include <rapidjson/writer.h>

#include <cstdio>
#include <memory>
#include <vector>

namespace Bench {

namespace {

constexpr std::size_t kBufferBytes = 65536;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using UniqueFile = std::unique_ptr<std::FILE, CloseFile>;

}  // namespace

rapidjson::Document ParseJson(const std::filesystem::path& path) {
  rapidjson::Document document;
  const UniqueFile file(std::fopen(path.string().c_str(), "rb"));
  if (!file) return std::move(document.Parse(""));
  std::vector<char> buffer(kBufferBytes);
  rapidjson::FileReadStream stream(file.get(), buffer.data(), buffer.size());
  document.ParseStream(stream);
  return document;
}

bool WriteJson(const std::filesystem::path& path, const rapidjson::Document& document) {
  const UniqueFile file(std::fopen(path.string().c_str(), "wb"));
  if (!file) return false;
  std::vector<char> buffer(kBufferBytes);
  rapidjson::FileWriteStream stream(file.get(), buffer.data(), buffer.size());
  rapidjson::Writer<rapidjson::FileWriteStream> writer(stream);
  document.Accept(writer);
  stream.Flush();
  return true;
}

bool ParseXml(const std::filesystem::path& path, pugi::xml_document& document) {
  return static_cast<bool>(document.load_file(path.c_str()));
}

}  // namespace Bench
