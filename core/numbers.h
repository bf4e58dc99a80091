// Numbers to text and back, the same in every locale, with the two roundings of the program:
// ToWhole when a value becomes an integer, Mask when it is shown.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vexa {

/// Shortest decimal text that reads back the same value: 1013, -56.3, 999.9; never an exponent.
std::string Shortest(double value);
std::string Shortest(float value);  // don't widen a float first: 999.9f prints as 999.9
std::string Shortest(int value);

/// The same for a message: with an exponent where the figures would fill the line.
std::string Brief(double value);

/// Reads a whole field as a number with a full stop, leading and trailing blanks allowed; an
/// exponent (e, E, d, D) is read too. Empty for anything else, for infinities and NaN.
std::optional<double> ParseNumber(std::string_view text);

/// Reads a whole field as an integer; a number with a fraction other than 0 is refused.
std::optional<int> ParseWhole(std::string_view text);

/// To the nearest whole number, halves to the even neighbour; clamped to the range of int.
int ToWhole(double value);

/// Rounded to a number of decimals, halves away from zero, in binary arithmetic.
double Rounded(double value, int decimals);

/// A value shown by a mask of '0' (always a digit) and '#' (a digit where there is one) around at
/// most one full stop: Mask(-0.04, "##0.0") is "0.0", Mask(7, "00000") is "00007". Rounds the
/// value's shortest decimal form, halves away from zero; a value that rounds to 0 has no sign.
std::string Mask(double value, std::string_view mask);

/// Text padded with blanks on the left (or the right) to a width; longer text stays whole.
std::string PadLeft(std::string_view text, int width);
std::string PadRight(std::string_view text, int width);

std::string_view Trim(std::string_view text);

}  // namespace vexa
