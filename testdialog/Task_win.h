#pragma once

#include <memory>
#include <type_traits>
#include <utility>

namespace zt {

// Task is a function that is handed on and never copied: what it holds may be moved only, and no code is made for
// copying it, which for the readings of the pages would be much.
template <class Signature>
class Task;

template <class Result, class... Arguments>
class Task<Result(Arguments...)> {
 public:
  Task() = default;
  template <class Function>
  requires(!std::is_same_v<std::decay_t<Function>, Task>) Task(Function function)
      : held_(std::make_unique<Held<Function>>(std::move(function))) {}

  explicit operator bool() const { return held_ != nullptr; }
  Result operator()(Arguments... arguments) { return held_->Call(arguments...); }

 private:
  struct Base {
    virtual ~Base() = default;
    virtual Result Call(Arguments... arguments) = 0;
  };
  template <class Function>
  struct Held : Base {
    explicit Held(Function held) : function(std::move(held)) {}
    Result Call(Arguments... arguments) override { return function(arguments...); }
    Function function;
  };
  std::unique_ptr<Base> held_;
};

}  // namespace zt
