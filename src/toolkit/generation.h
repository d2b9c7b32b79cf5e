#pragma once

#include <cstdint>

namespace orbelcast {

/// Tells which of several overlapping undertakings holds: the one that began last.
///
/// An undertaking takes its `Generation` when it begins and asks it after each yield, wait or event: one that is no
/// longer current was overtaken by a newer one, or its control has ended, and ends there without another step. A
/// generation must not outlive its counter.
class GenerationCounter {
 public:
  class Generation {
   public:
    bool IsCurrent() const { return counter_->newest_ == number_; }

   private:
    friend class GenerationCounter;
    Generation(const GenerationCounter& counter, std::uint64_t number) : counter_(&counter), number_(number) {}

    const GenerationCounter* counter_;
    std::uint64_t number_;
  };

  /// Begins a new undertaking; every earlier one is overtaken.
  Generation Begin() {
    ++newest_;
    return Current();
  }
  /// The newest undertaking's, for a step that belongs to it.
  Generation Current() const { return {*this, newest_}; }

 private:
  std::uint64_t newest_ = 0;
};

}  // namespace orbelcast
