// SPDX-License-Identifier: MIT
/// @file
/// Calls that return what they make of whole vectors.
#ifndef OVKS_CPP_REDUCTION_HPP
#define OVKS_CPP_REDUCTION_HPP

#include "call.hpp"

namespace ovks {

/// Asks for a result of type @p T: `dotProd(a, b, as<double>)`.
template <class T>
struct As {};

/// The value of type As.
template <class T>
inline constexpr As<T> as{};

/// What meanStdDev() returns.
template <class T>
struct MeanAndDeviation {
  T mean;    ///< arithmetic mean
  T stdDev;  ///< sample standard deviation
};

namespace detail {

template <auto function>
struct Layout {
  using S = SignatureOf<function>;
  static constexpr std::size_t kSources = S::afterPointers(0), kResults = kSources + 1,
                               kOptions = S::afterPointers(kResults);
};

template <auto function, class Sources = Range<0, Layout<function>::kSources>,
          class Options = Range<Layout<function>::kOptions, SignatureOf<function>::kArity>>
struct ReductionCall;

template <auto function, std::size_t... source, std::size_t... option>
struct ReductionCall<function, std::index_sequence<source...>, std::index_sequence<option...>> {
  using L = Layout<function>;
  using Element = Pointee<function, L::kResults>;
  static constexpr bool kPair = L::kOptions - L::kResults == 2;
  using Result = std::conditional_t<kPair, MeanAndDeviation<Element>, Element>;

  Result operator()(ArgumentOf<function, source>... sources, Parameter<function, option>... options,
                    As<Element>) const {
    const int len = commonLength<function>(sources...);
    Result result;
    if constexpr (kPair) checked<function>(function(sources.data()..., len, &result.mean, &result.stdDev, options...));
    else checked<function>(function(sources.data()..., len, &result, options...));
    return result;
  }
};

// Without As, and without the hint.
template <auto function, class Sources = Range<0, Layout<function>::kSources>,
          class Options = Range<Layout<function>::kOptions, SignatureOf<function>::kArity>>
struct UntaggedCall;

template <auto function, std::size_t... source, std::size_t... option>
struct UntaggedCall<function, std::index_sequence<source...>, std::index_sequence<option...>>
    : ReductionCall<function> {
  using Call = ReductionCall<function>;
  using Call::operator();
  auto operator()(ArgumentOf<function, source>... sources, Parameter<function, option>... options) const {
    return Call::operator()(sources..., options..., as<typename Call::Element>);
  }
};

template <auto function, class Sources = Range<0, Layout<function>::kSources>>
struct HintedCall;

template <auto function, std::size_t... source>
struct HintedCall<function, std::index_sequence<source...>> : UntaggedCall<function> {
  using UntaggedCall<function>::operator();
  auto operator()(ArgumentOf<function, source>... sources) const {
    return UntaggedCall<function>::operator()(sources..., AlgHintNone);
  }
};

}  // namespace detail

/// The C functions by one name. A call takes their sources as spans of one common length, then their options, and
/// returns the result.
template <auto... functions>
using Reductions = Overloads<detail::UntaggedCall<functions>...>;

/// Reductions whose option, an AlgHint, may be left out.
template <auto... functions>
using Hinted = Overloads<detail::HintedCall<functions>...>;

/// Reductions of which there are others for the same sources: a last argument As tells the type of the result.
template <auto... functions>
using Tagged = Overloads<detail::ReductionCall<functions>...>;

}  // namespace ovks

#endif
