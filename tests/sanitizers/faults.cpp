// Commits the fault that its argument names.
#include <cstdlib>
#include <limits>
#include <string_view>
#include <thread>
#include <vector>

namespace {

// Volatile, so that no compiler sees through the faults.
void* volatile place = nullptr;
volatile int one = 1;

void Leak() {
  place = std::malloc(1);
  place = nullptr;
}

int Overrun() {
  const std::vector<int> numbers(1);
  return numbers.data()[one];
}

void Race() {
  const auto count = [] { one = one + 1; };
  std::thread other(count);
  count();
  other.join();
}

int Overflow() { return std::numeric_limits<int>::max() + one; }

}  // namespace

int main(int argc, char** argv) {
  const std::string_view fault = argc > 1 ? argv[1] : "";
  if (fault == "leak") Leak();
  if (fault == "race") Race();
  if (fault == "overrun") return Overrun();
  if (fault == "overflow") return Overflow();
  return 0;
}
