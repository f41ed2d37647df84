#pragma once

namespace examples {

// A line on the terminal that tells how much is done; silent where `shown` is false. It vanishes at the end.
class ProgressBar {
  public:
    explicit ProgressBar(bool shown) : shown_(shown) {}
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    void show(const char* what, double part);

  private:
    bool shown_;
    const char* what_ = nullptr;
    int percent_ = -1;
};

}  // namespace examples
