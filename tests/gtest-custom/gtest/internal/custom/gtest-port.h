// GoogleTest's own place for local changes, found before its stock (empty) one.
// The win32 thread model of MinGW's GCC 12 has no std::mutex or std::condition_variable, which only
// GoogleTest's Notification uses, and only GoogleTest's own thread tests use that. Our tests start no
// threads, so a Notification that needs neither is enough.
#ifndef GOOGLETEST_INCLUDE_GTEST_INTERNAL_CUSTOM_GTEST_PORT_H_
#define GOOGLETEST_INCLUDE_GTEST_INTERNAL_CUSTOM_GTEST_PORT_H_

#define GTEST_HAS_NOTIFICATION_ 1
namespace testing {
namespace internal {
class Notification {
 public:
  void Notify() { notified_ = true; }
  void WaitForNotification() {
    while (!notified_) {
    }
  }

 private:
  volatile bool notified_ = false;
};
}  // namespace internal
}  // namespace testing

#endif  // GOOGLETEST_INCLUDE_GTEST_INTERNAL_CUSTOM_GTEST_PORT_H_
