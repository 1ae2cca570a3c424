// Two threads that write one number without synchronization: ThreadSanitizer must report it.
#include <cstdio>
#include <thread>

int main() {
  int number = 0;
  std::thread one([&] { ++number; });
  std::thread two([&] { ++number; });
  one.join();
  two.join();
  std::printf("%d\n", number);
}
