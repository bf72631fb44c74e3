// A program with a data race, which ThreadSanitizer must report: otherwise its silence about the
// tests of the core would show nothing.

#include <cstdio>
#include <thread>

int main() {
  int shared = 0;
  std::thread other([&shared] { ++shared; });
  ++shared;
  other.join();
  std::printf("%d\n", shared);
}
