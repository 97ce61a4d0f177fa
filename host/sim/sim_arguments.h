#pragma once
// The argument list of a preference-interface call made on the simulated host, and the
// out-of-range error that stands in for the host's own exception.
#include <stdexcept>
#include <string>
#include <vector>

#include "host/host.h"
#include "platform/wide_text.h"

namespace hublet {

class OutOfRangeError : public std::out_of_range {
 public:
  explicit OutOfRangeError(const wchar_t* message)
      : std::out_of_range(WideToUtf8(message)), message_(message) {}
  const std::wstring& Message() const { return message_; }

 private:
  std::wstring message_;
};

class SimArguments final : public InterfaceArguments {
 public:
  SimArguments() = default;
  explicit SimArguments(std::vector<int> values) : values_(std::move(values)) {}
  std::size_t Count() const override { return values_.size(); }
  // 3ds Max reads past its array here, which is undefined: the simulation stops loudly
  // instead, so that only the plug-in's own check ever answers a missing argument.
  int IntAt(std::size_t index) const override {
    if (index >= values_.size())
      throw std::logic_error("the plug-in read argument " + std::to_string(index) + " of a call with " +
                             std::to_string(values_.size()) + ": undefined behaviour in 3ds Max");
    return values_[index];
  }
  [[noreturn]] void ThrowOutOfRange(const wchar_t* message) const override { throw OutOfRangeError(message); }

 private:
  std::vector<int> values_;
};

}  // namespace hublet
