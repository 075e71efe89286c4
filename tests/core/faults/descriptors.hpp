#pragma once

#include <cstddef>
#include <sys/resource.h>

namespace qvtc::test {

/// How many descriptors this process has open.
std::size_t open_descriptors();

/// Lets this process open only so many more descriptors, for as long as it lives.
class DescriptorLimit {
  public:
    explicit DescriptorLimit(unsigned more);
    DescriptorLimit(const DescriptorLimit&) = delete;
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit();

  private:
    rlimit former_{};
};

/// Takes a descriptor away, as a caller that has closed it, for as long as it lives.
class ClosedDescriptor {
  public:
    explicit ClosedDescriptor(int number);
    ClosedDescriptor(const ClosedDescriptor&) = delete;
    ClosedDescriptor& operator=(const ClosedDescriptor&) = delete;
    ~ClosedDescriptor();

  private:
    int number_;
    int kept_;
};

} // namespace qvtc::test
