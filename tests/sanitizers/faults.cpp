// Commits the fault that its argument names.
#include <cstdlib>
#include <limits>
#include <string_view>

namespace {

void Leak() {
  void* volatile lost = std::malloc(1);
  lost = nullptr;
}

int Overrun() {
  char* const block = static_cast<char*>(std::malloc(1));
  volatile int place = 1;
  const int read = block[place];
  std::free(block);
  return read;
}

int Overflow() {
  volatile int most = std::numeric_limits<int>::max();
  return most + 1;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view fault = argc > 1 ? argv[1] : "";
  if (fault == "leak") Leak();
  if (fault == "overrun") return Overrun();
  if (fault == "overflow") return Overflow();
  return 0;
}
