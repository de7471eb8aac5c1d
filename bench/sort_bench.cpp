// SPDX-License-Identifier: MIT
// Sorts beside their peers. Each call gets the next of many random inputs, so that nobody learns its branches by heart;
// the copy that brings it is part of every row, and is the row's limit. With --patterns or --sweep: a series of its own.
#include <ovks.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "sort_series.hpp"
#include "support/report.hpp"

#ifdef OVKS_HAVE_HWY
#include <hwy/contrib/sort/vqsort.h>
#include <hwy/targets.h>
#endif

namespace {

#ifdef OVKS_HAVE_HWY
template <class T>
void vqsort(int64_t without, T* v, int n) {
  static const hwy::Sorter sorter;
  static int64_t last = 0;
  if (without != last) {
    hwy::DisableTargets(last = without);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }
  sorter(v, static_cast<std::size_t>(n), hwy::SortAscending());
}
#endif

template <class T>
class Inputs {
 public:
  explicit Inputs(int n)
      : n_(n),
        batch_(static_cast<std::size_t>(std::max(1, 4096 / n))),
        stride_((static_cast<std::size_t>(n) * sizeof(T) + 63) / 64 * 64 / sizeof(T)),
        master_(static_cast<std::size_t>(std::max(n, 1 << 16) / n * n)),
        v_(batch_ * stride_),
        index_(n) {
    std::mt19937_64 random(7);
    for (T& x : master_) {
      if constexpr (std::is_floating_point_v<T>) x = static_cast<T>(std::normal_distribution<double>()(random));
      else x = static_cast<T>(random());
    }
    int size = 0;
    ovksSortRadixGetBufferSize(n, type(), &size);
    buffer_.resize(static_cast<std::size_t>(size));
  }

  // Short inputs come many at a time, each in lines of its own: what was written just before is slow to read.
  T* take() {
    const auto n = static_cast<std::size_t>(n_);
    if (taken_ == batch_) {
      for (taken_ = 0; taken_ < batch_; ++taken_) {
        std::memcpy(&v_[taken_ * stride_], &master_[next_], n * sizeof(T));
        next_ = (next_ + n) % master_.size();
      }
      taken_ = 0;
    }
    return &v_[taken_++ * stride_];
  }
  int length() const { return n_; }
  int32_t* index() { return index_.data(); }
  uint8_t* buffer() { return buffer_.data(); }

 private:
  static constexpr DataType type() {
    if constexpr (std::is_floating_point_v<T>) return sizeof(T) == 4 ? DataType32f : DataType64f;
    else return sizeof(T) == 1 ? DataType8u : sizeof(T) == 2 ? DataType16s : DataType32s;
  }

  int n_;
  std::size_t batch_, stride_, taken_ = batch_, next_ = 0;
  std::vector<T> master_, v_;
  std::vector<int32_t> index_;
  std::vector<uint8_t> buffer_;
};

template <class T>
class Rows {
 public:
  Rows(std::string type, int n) : type_(std::move(type)), inputs_(std::make_shared<Inputs<T>>(n)) {}

  template <class F>
  void add(const char* row, const char* by, F f) const {
    bench::add(row + ("_" + type_), inputs_->length(), by,
               [inputs = inputs_, f]() mutable { f(*inputs, inputs->take()); });
  }

  void plain(Status (*sort)(T*, int)) const {
    add("Sort", "ovks", [sort](auto& in, T* v) { sort(v, in.length()); });
    add("Sort", "std", [](auto& in, T* v) { std::sort(v, v + in.length()); });
    add("Sort", "limit", [](auto&, T*) {});
#ifdef OVKS_HAVE_HWY
    // Some processors write compressed vectors to memory so slowly that the peer does better without AVX-512.
    if constexpr (sizeof(T) > 1) {
      add("Sort", "vqsort", [](auto& in, T* v) { vqsort(0, v, in.length()); });
      add("Sort", "vqsort-avx2", [](auto& in, T* v) { vqsort(HWY_AVX3 | HWY_AVX3_DL, v, in.length()); });
    }
#endif
  }

  void index(Status (*sort)(T*, int32_t*, int), Status (*sortApart)(const T*, int32_t*, int, uint8_t*)) const {
    add("SortIndex", "ovks", [sort](auto& in, T* v) { sort(v, in.index(), in.length()); });
    add("SortRadixIndex", "ovks", [sortApart](auto& in, T* v) { sortApart(v, in.index(), in.length(), in.buffer()); });
    for (const char* row : {"SortIndex", "SortRadixIndex"}) {
      add(row, "std", [](auto& in, T* v) {
        std::iota(in.index(), in.index() + in.length(), 0);
        std::sort(in.index(), in.index() + in.length(), [v](int32_t a, int32_t b) { return v[a] < v[b]; });
      });
    }
#ifdef OVKS_HAVE_HWY
    // Keys above positions in 64 bits; the way back is left out.
    if constexpr (sizeof(T) == 4) {
      add("SortIndex", "vqsort-pairs", [pairs = std::vector<uint64_t>()](auto& in, T* v) mutable {
        pairs.resize(static_cast<std::size_t>(in.length()));
        for (std::size_t i = 0; i < pairs.size(); ++i) {
          uint32_t key;
          std::memcpy(&key, v + i, sizeof key);
          pairs[i] = uint64_t{key} << 32 | i;
        }
        vqsort(0, pairs.data(), in.length());
      });
    }
#endif
  }

  void radix(Status (*sort)(T*, int, uint8_t*)) const {
    add("SortRadix", "ovks", [sort](auto& in, T* v) { sort(v, in.length(), in.buffer()); });
    add("SortRadix", "std", [](auto& in, T* v) { std::sort(v, v + in.length()); });
  }

 private:
  std::string type_;
  std::shared_ptr<Inputs<T>> inputs_;
};

template <class T>
void rows(const char* type, int n, Status (*sort)(T*, int), Status (*index)(T*, int32_t*, int),
          Status (*radix)(T*, int, uint8_t*), Status (*radixIndex)(const T*, int32_t*, int, uint8_t*)) {
  const Rows<T> all(type, n);
  all.plain(sort);
  all.index(index, radixIndex);
  all.radix(radix);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string series = argc > 1 ? argv[1] : "";
  if (series == "--patterns") return sortPatterns(), 0;
  if (series == "--sweep") return sortSweep(), 0;
  for (const int n : {10, 100, 1000, 100000, 1000000}) {
    rows("8u", n, ovksSortAscend_8u_I, ovksSortIndexAscend_8u_I, ovksSortRadixAscend_8u_I, ovksSortRadixIndexAscend_8u);
    rows("16s", n, ovksSortAscend_16s_I, ovksSortIndexAscend_16s_I, ovksSortRadixAscend_16s_I,
         ovksSortRadixIndexAscend_16s);
    rows("32s", n, ovksSortAscend_32s_I, ovksSortIndexAscend_32s_I, ovksSortRadixAscend_32s_I,
         ovksSortRadixIndexAscend_32s);
    rows("32f", n, ovksSortAscend_32f_I, ovksSortIndexAscend_32f_I, ovksSortRadixAscend_32f_I,
         ovksSortRadixIndexAscend_32f);
    rows("64f", n, ovksSortAscend_64f_I, ovksSortIndexAscend_64f_I, ovksSortRadixAscend_64f_I,
         ovksSortRadixIndexAscend_64f);
  }
  return bench::run(argc, argv);
}
