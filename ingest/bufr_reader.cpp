#include "ingest/bufr_reader.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "core/numbers.h"
#include "ingest/bufr_bits.h"

namespace vexa::ingest {
namespace {

// Of a descriptor F X Y written as a whole number.
constexpr int kF = 100000, kX = 1000;
constexpr int kElement = 0, kReplication = 1, kOperator = 2;
constexpr int kFactors = 31;  // the class of counts and marks, which has no quality
constexpr int kCancelled = 0;

// Operators by their X.
constexpr int kWidth = 1, kScale = 2, kReference = 3, kQualified = 4, kInsertedText = 5;
constexpr int kLocalWidth = 6, kPrecision = 7, kTextWidth = 8, kAbsent = 21;
constexpr int kFirstOfQuality = 22,
              kLastOfQuality = 37;  // quality, substitutes, statistics, bitmaps
// Of these the ones that only announce elements; the others stand for values of their own.
constexpr int kQuality = 22, kBitmapReset = 35, kBitmap = 36, kBitmapAgain = 37;
constexpr int kReferencesEnd = 255;  // operand behind the last new reference
constexpr int kFirstAbsentClass = 10;  // places and times are there, and counts
constexpr int kNeutral = 128;       // operand that changes no width or scale

constexpr std::size_t kMostWidth = 62;  // bits of a number
constexpr std::size_t kCountWidth = 6;  // of the width of what differs between compressed subsets

bool IsAllOnes(std::uint64_t raw, std::size_t width) {
  return width > 0 && raw == (~std::uint64_t{0} >> (64 - width));
}

// Without the powers of ten by which it was multiplied.
double Unscaled(double value, int scale) {
  if (scale == 0) return value;
  const double power = std::pow(10.0, std::abs(scale));
  return scale > 0 ? value / power : value * power;
}

bool IsKnownOperator(int x) {
  return x == kWidth || x == kScale || x == kReference || x == kQualified || x == kInsertedText ||
         x == kPrecision || x == kTextWidth || x == kAbsent;
}

// Of what is repeated the data lie there as often, or once for all.
bool RepeatsData(int descriptor) {
  return descriptor == 31011 || descriptor == 31012;
}

bool CountsRepetitions(int descriptor) {
  return descriptor == 31000 || descriptor == 31001 || descriptor == 31002 ||
         RepeatsData(descriptor);
}

}  // namespace

// One way through the steps, with what the operators have set.
class BufrReader::Walk {
 public:
  Walk(const BufrReader& reader, std::size_t& stepsLeft, const BufrPlace& place, const Take& take)
      : reader_(reader),
        stepsLeft_(stepsLeft),
        take_(take),
        subset_(place.Subset),
        bits_(reader.head_.Data, place.Bit) {}

  /// False where the message is damaged, see Reason.
  bool Go(std::size_t from, std::size_t end) {
    for (std::size_t at = from; at < end; ++at) {
      if (stepsLeft_ == 0) return Fails("it repeats without an end");
      --stepsLeft_;
      const Step& step = reader_.steps_[at];
      switch (step.Does) {
        case Step::What::Element:
          if (!GiveElement(*step.Element)) return false;
          break;
        case Step::What::Operator:
          if (!Obey(step.Number / kX, step.Number % kX)) return false;
          break;
        case Step::What::Passed:
          PassQuality();
          Number(static_cast<std::size_t>(step.Number));
          break;
        case Step::What::Repeat:
        case Step::What::RepeatAsTold:
          if (!Repeat(step, at)) return false;
          at = step.End - 1;
          break;
      }
      if (bits_.Ended()) return Fails("its data end too early");
    }
    return true;
  }

  std::size_t At() const { return bits_.At(); }
  const std::string& Reason() const { return reason_; }

 private:
  bool Fails(std::string_view reason) {
    if (reason_.empty()) reason_ = reason;
    return false;
  }

  bool Repeat(const Step& step, std::size_t at) {
    auto count = static_cast<std::size_t>(step.Number);
    std::size_t body = at + 1;
    bool isOnce = false;
    if (step.Does == Step::What::RepeatAsTold) {
      const BufrElement& factor = *reader_.steps_[body++].Element;
      const Raw raw = Number(static_cast<std::size_t>(factor.Width));
      if (raw.Differs) return Fails("its compressed subsets differ in length");
      if (bits_.Ended()) return Fails("its data end too early");
      count = static_cast<std::size_t>(raw.Bits);
      isOnce = RepeatsData(factor.Descriptor);
      if (!Give({.Descriptor = factor.Descriptor, .Number = static_cast<double>(count)})) {
        return false;
      }
    }
    const BitReader begin = bits_;
    for (std::size_t i = 0; i < count && body < step.End; ++i) {
      if (isOnce) bits_ = begin;
      if (!Go(body, step.End)) return false;
    }
    return true;
  }

  bool GiveElement(const BufrElement& element) {
    if (referenceWidth_ > 0) return TakeReference(element);
    if (absent_ > 0) {
      --absent_;
      const int itsClass = element.Descriptor / kX;
      if (itsClass >= kFirstAbsentClass && itsClass != kFactors) {
        return Give({.Descriptor = element.Descriptor});
      }
    }
    if (element.Descriptor / kX != kFactors) PassQuality();
    BufrValue value{.Descriptor = element.Descriptor};
    if (element.Kind == BufrKind::Text) {
      value.Text =
          Text(textOctets_ > 0 ? textOctets_ : static_cast<std::size_t>(element.Width) / kOctet);
      return Give(value);
    }
    const bool isScaled = element.Kind == BufrKind::Number;
    const int width = element.Width + (isScaled ? extraWidth_ + (10 * precision_ + 2) / 3 : 0);
    if (width < 1 || width > static_cast<int>(kMostWidth)) {
      return Fails("an element has no bits or too many");
    }
    const Raw raw = Number(static_cast<std::size_t>(width));
    if (!raw.IsMissing) {
      const auto own = references_.find(element.Descriptor);
      const double reference = own == references_.end() ? element.Reference : own->second;
      const double sum =
          static_cast<double>(raw.Bits) + Unscaled(reference, isScaled ? -precision_ : 0);
      value.Number = Unscaled(sum, element.Scale + (isScaled ? extraScale_ + precision_ : 0));
    }
    return Give(value);
  }

  // In place of its value an element has the reference that holds from here on, its sign first.
  bool TakeReference(const BufrElement& element) {
    const Raw raw = Number(referenceWidth_);
    if (raw.Differs) return Fails("its compressed subsets differ in their references");
    const std::uint64_t sign = std::uint64_t{1} << (referenceWidth_ - 1);
    const auto size = static_cast<double>(raw.Bits & (sign - 1));
    references_[element.Descriptor] = (raw.Bits & sign) != 0 ? -size : size;
    return true;
  }

  bool Give(const BufrValue& value) {
    if (isOfQuality_) return true;
    constexpr std::size_t kMostValues = 500000;
    if (++given_ > kMostValues) return Fails("it has too many values");
    if (!bits_.Ended()) take_(value);
    return true;
  }

  struct Raw {
    std::uint64_t Bits = 0;
    bool IsMissing = false;
    bool Differs = false;  // between the subsets
  };

  template <class Read>
  auto OfThisSubset(std::size_t width, Read&& read) {
    bits_.Pass(width * subset_);
    auto own = read();
    bits_.Pass(width * (reader_.head_.Subsets - 1 - subset_));
    return own;
  }

  // Of compressed subsets the lowest value comes first, then what each has more.
  Raw Number(std::size_t width) {
    Raw raw{.Bits = bits_.Bits(width)};
    raw.IsMissing = IsAllOnes(raw.Bits, width);
    if (!reader_.head_.IsCompressed) return raw;
    const auto moreWidth = static_cast<std::size_t>(bits_.Bits(kCountWidth));
    if (moreWidth == 0) return raw;
    const std::uint64_t more = OfThisSubset(moreWidth, [&] { return bits_.Bits(moreWidth); });
    return {raw.Bits + more, IsAllOnes(more, moreWidth), true};
  }

  std::string Text(std::size_t octets) {
    const std::string text = bits_.Octets(octets);
    if (!reader_.head_.IsCompressed) return MessageText(text);
    const auto each = static_cast<std::size_t>(bits_.Bits(kCountWidth));
    if (each == 0) return MessageText(text);
    return MessageText(OfThisSubset(each * kOctet, [&] { return bits_.Octets(each); }));
  }

  void PassQuality() {
    for (const std::size_t width : qualities_) Number(width);
  }

  bool Obey(int x, int operand) {
    switch (x) {
      case kWidth:
        extraWidth_ = operand == kCancelled ? 0 : operand - kNeutral;
        break;
      case kScale:
        extraScale_ = operand == kCancelled ? 0 : operand - kNeutral;
        break;
      case kReference:
        if (operand == kCancelled) references_.clear();
        referenceWidth_ = operand == kReferencesEnd ? 0 : static_cast<std::size_t>(operand);
        if (referenceWidth_ > kMostWidth) return Fails("a reference has too many bits");
        break;
      case kAbsent:
        absent_ = operand;
        break;
      case kQuality:
        isOfQuality_ = true;
        break;
      case kQualified:
        if (operand > static_cast<int>(kMostWidth)) return Fails("a quality has too many bits");
        if (operand == kCancelled) {
          if (!qualities_.empty()) qualities_.pop_back();
        } else {
          qualities_.push_back(static_cast<std::size_t>(operand));
        }
        break;
      case kInsertedText:
        Text(static_cast<std::size_t>(operand));
        break;
      case kPrecision:
        precision_ = operand;
        if (precision_ > static_cast<int>(kMostWidth)) return Fails("a precision is too high");
        break;
      default:
        textOctets_ = static_cast<std::size_t>(operand);
    }
    return true;
  }

  const BufrReader& reader_;
  std::size_t& stepsLeft_;
  const Take& take_;
  std::size_t subset_;
  BitReader bits_;
  int extraWidth_ = 0, extraScale_ = 0, precision_ = 0;
  std::size_t textOctets_ = 0;            // 0: as the table has it
  std::vector<std::size_t> qualities_{};  // bits before each element, of the operators in force
  std::size_t referenceWidth_ = 0;     // bits of the new references that follow
  std::map<int, double> references_{};  // new ones, by descriptor
  int absent_ = 0;                      // elements without data that follow
  bool isOfQuality_ = false;            // what follows speaks of earlier values
  std::size_t given_ = 0;
  std::string reason_{};
};

std::optional<BufrReader> BufrReader::For(const BufrHead& head) {
  if (head.MasterTable != 0) return std::nullopt;
  std::vector<int> descriptors(head.DescriptorCount());
  for (std::size_t i = 0; i < descriptors.size(); ++i) descriptors[i] = head.DescriptorAt(i);
  BufrReader reader(head);
  if (!reader.WriteOut(descriptors, 0)) return std::nullopt;
  // No message of use passes more steps than these; a damaged one could for hours.
  constexpr std::size_t kAtLeast = 1000000, kPerBit = 8;
  reader.stepsLeft_ = kAtLeast + kPerBit * kOctet * head.Data.size();
  return reader;
}

// Appends the steps of descriptors; false when one of them is not known.
bool BufrReader::WriteOut(std::span<const int> descriptors, int depth) {
  constexpr int kDeepest = 40;
  constexpr std::size_t kMostWritten = 200000;
  if (depth > kDeepest) return false;
  for (std::size_t i = 0; i < descriptors.size() && !isComplete_; ++i) {
    if (steps_.size() > kMostWritten) return false;
    const int descriptor = descriptors[i];
    const int f = descriptor / kF, x = descriptor % kF / kX, y = descriptor % kX;
    if (f == kElement) {
      const BufrElement* element = FindElement(descriptor);
      if (element == nullptr || element->Since > head_.TableVersion) return false;
      steps_.push_back({.Element = element});
    } else if (f == kReplication) {
      const std::size_t place = steps_.size();
      const bool isTold = y == 0;
      steps_.push_back({isTold ? Step::What::RepeatAsTold : Step::What::Repeat, y});
      if (isTold) {
        if (++i >= descriptors.size() || !CountsRepetitions(descriptors[i])) return false;
        steps_.push_back({.Element = FindElement(descriptors[i])});
      }
      const auto count = static_cast<std::size_t>(x);
      if (count > descriptors.size() - i - 1) return false;
      if (!WriteOut(descriptors.subspan(i + 1, count), depth + 1) || isComplete_) return false;
      steps_[place].End = steps_.size();
      i += count;
    } else if (f == kOperator) {
      if (x >= kFirstOfQuality && x <= kLastOfQuality) {
        // Of subsets that lie one after another the next begins behind the quality.
        if (head_.Subsets == 1 || head_.IsCompressed) {
          isComplete_ = true;
        } else if (x == kQuality) {
          steps_.push_back({Step::What::Operator, x * kX + y});
        } else if (x != kBitmapReset && x != kBitmap && x != kBitmapAgain) {
          return false;
        }
      } else if (x == kLocalWidth) {
        if (++i >= descriptors.size() || descriptors[i] >= kF) return false;
        if (y > static_cast<int>(kMostWidth)) return false;
        steps_.push_back({Step::What::Passed, y});
      } else if (IsKnownOperator(x)) {
        steps_.push_back({Step::What::Operator, x * kX + y});
      } else {
        return false;
      }
    } else {
      const std::optional<BufrSequence> sequence = FindSequence(descriptor);
      if (!sequence || sequence->Since > head_.TableVersion) return false;
      if (!WriteOut(sequence->Members, depth + 1)) return false;
    }
  }
  return true;
}

std::optional<Fault> BufrReader::Read(BufrPlace& place, const Take& take) {
  Walk walk(*this, stepsLeft_, place, take);
  if (!walk.Go(0, steps_.size())) {
    return DamagedMessage("a message cannot be unpacked: " + walk.Reason());
  }
  place = {place.Subset + 1, head_.IsCompressed ? 0 : walk.At()};
  return std::nullopt;
}

}  // namespace vexa::ingest
