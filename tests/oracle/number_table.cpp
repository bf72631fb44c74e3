// Prints numbers with the JSON writer, to be compared with the oracle's texts of numbers. Each line
// has the bit pattern of a 32-bit float in hexadecimal, a blank, and the text of the writer for
// that float as a double.

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace {

constexpr int kRandomNumbers = 30'000;

/// The splitmix64 sequence, the same on every platform.
class Random {
 public:
  std::uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15ULL;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }

 private:
  std::uint64_t state_ = 1;
};

void PrintRow(float value) {
  if (!std::isfinite(value)) return;
  rapidjson::StringBuffer text;
  rapidjson::Writer<rapidjson::StringBuffer> writer(text);
  writer.Double(static_cast<double>(value));
  std::printf("%08x %s\n", static_cast<unsigned>(std::bit_cast<std::uint32_t>(value)),
              text.GetString());
}

}  // namespace

int main() {
  for (const float value : {0.0F, -0.0F, 0.1F, 1.0F, 0.88F, 3600.0F, 1e21F, 1e22F, 1e-6F, 1e-7F,
                            3.4028235e38F, 1.17549435e-38F, 1e-45F}) {
    PrintRow(value);
  }
  Random random;
  for (int i = 0; i < kRandomNumbers; ++i) {
    const std::uint64_t bits = random.Next();
    // Any float, then one in the range of the energy of a day in watt-hours.
    PrintRow(std::bit_cast<float>(static_cast<std::uint32_t>(bits)));
    PrintRow(static_cast<float>(bits >> 40) / 8192.0F);
  }
}
