// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "tests/rules/PointOfSaleRules.h"

#include <algorithm>

// Numbers are strings of decimal digits here, and worked on as on paper.

namespace rules {

namespace {

std::string stripped(const std::string &digits)
{
    const auto first = digits.find_first_not_of('0');
    return first == std::string::npos ? "0" : digits.substr(first);
}

std::string product(const std::string &a, const std::string &b)
{
    std::vector<int> places(a.size() + b.size(), 0);
    for (std::size_t i = a.size(); i-- > 0;) {
        for (std::size_t j = b.size(); j-- > 0;) {
            const int sum = places[i + j + 1] + (a[i] - '0') * (b[j] - '0');
            places[i + j + 1] = sum % 10;
            places[i + j] += sum / 10;
        }
    }
    std::string text;
    for (const int place : places)
        text += static_cast<char>('0' + place);
    return stripped(text);
}

std::string plusOne(std::string digits)
{
    for (std::size_t i = digits.size(); i-- > 0;) {
        if (digits[i] != '9') {
            ++digits[i];
            return digits;
        }
        digits[i] = '0';
    }
    return "1" + digits;
}

struct Division
{
    std::string quotient;
    bool leavesRest;
};

/// Digit by digit, as it is done by hand; divisors stay below 2^60.
Division divided(const std::string &digits, std::uint64_t divisor)
{
    std::string quotient;
    std::uint64_t rest = 0;
    for (const char digit : digits) {
        rest = rest * 10 + static_cast<std::uint64_t>(digit - '0');
        quotient += static_cast<char>('0' + rest / divisor);
        rest %= divisor;
    }
    return {stripped(quotient), rest != 0};
}

struct Factor
{
    const char *digits;
    int exponent;
};

// Grams: the avoirdupois pound is 453.59237 g; 7000 grains are a pound, 24 grains a pennyweight and
// 480 a troy ounce; a carat is 0.2 g, a short ton 2000 pounds.
std::optional<Factor> gramsOfOne(int unit)
{
    switch (unit) {
    case 1: return Factor{"1", -3};
    case 2: return Factor{"1", 0};
    case 3: return Factor{"1", 3};
    case 4: return Factor{"2", -1};
    case 6: return Factor{"6479891", -8};
    case 7: return Factor{"155517384", -8};
    case 8: return Factor{"1", 6};
    case 9: return Factor{"90718474", -2};
    case 10: return Factor{"311034768", -7};
    case 11: return Factor{"28349523125", -9};
    case 12: return Factor{"45359237", -5};
    default: return {};
    }
}

std::string placed(const std::string &digits, int exponent)
{
    if (exponent >= 0)
        return digits == "0" ? digits
                             : digits + std::string(static_cast<std::size_t>(exponent), '0');
    const auto decimals = static_cast<std::size_t>(-exponent);
    std::string text = digits;
    if (text.size() <= decimals)
        text.insert(0, decimals + 1 - text.size(), '0');
    return text.insert(text.size() - decimals, ".");
}

std::string withoutTrailingZeros(std::string text)
{
    if (text.find('.') == std::string::npos)
        return text;
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return text;
}

/// @p digits times ten to the power of @p exponent, by @p divisor
std::string sevenDigits(const std::string &digits, int exponent, std::uint64_t divisor)
{
    constexpr std::size_t extra = 30;
    const Division all = divided(digits + std::string(extra, '0'), divisor);
    exponent -= static_cast<int>(extra);
    if (all.quotient == "0")
        return "0";
    if (all.quotient.size() <= 7)
        return withoutTrailingZeros(placed(all.quotient, exponent));
    std::string kept = all.quotient.substr(0, 7);
    const std::string cut = all.quotient.substr(7);
    const std::string half = "5" + std::string(cut.size() - 1, '0');
    const bool isTie = cut == half && !all.leavesRest;
    const bool isOdd = (kept.back() - '0') % 2 != 0;
    if (isTie ? isOdd : cut >= half)
        kept = plusOne(kept);
    return withoutTrailingZeros(placed(kept, exponent + static_cast<int>(cut.size())));
}

std::string upToWhole(std::string digits, int exponent, std::uint64_t divisor)
{
    bool isCut = false;
    if (exponent >= 0) {
        digits += std::string(static_cast<std::size_t>(exponent), '0');
    } else {
        const auto decimals = static_cast<std::size_t>(-exponent);
        if (digits.size() <= decimals)
            digits.insert(0, decimals + 1 - digits.size(), '0');
        const std::string behind = digits.substr(digits.size() - decimals);
        isCut = behind.find_first_not_of('0') != std::string::npos;
        digits.erase(digits.size() - decimals);
    }
    const Division whole = divided(digits, divisor);
    return whole.leavesRest || isCut ? plusOne(whole.quotient) : whole.quotient;
}

} // namespace

std::optional<Stated> stated(const std::vector<std::uint8_t> &report)
{
    std::size_t at = 0;
    if (!report.empty() && report[0] == 0)
        at = 1;
    if (report.size() < at + 6 || report[at] != 3)
        return {};
    Stated found;
    if (report[at + 1] >= 1 && report[at + 1] <= 8)
        found.status = report[at + 1];
    if (report[at + 2] >= 1 && report[at + 2] <= 12)
        found.unit = report[at + 2];
    found.exponent = report[at + 3] > 127 ? report[at + 3] - 256 : report[at + 3];
    found.digits = report[at + 4] + 256U * report[at + 5];
    if (found.status == 5) {
        found.below = true;
        if (found.digits > 32767)
            found.digits = 65536 - found.digits;
    }
    return found;
}

std::string statedNumber(const Stated &weight)
{
    return placed(std::to_string(weight.digits), weight.exponent);
}

std::optional<StatedTexts> statedTexts(const Stated &weight)
{
    if (weight.digits == 0)
        return StatedTexts{"0", "0", "0", "0", "0", "0", "0"};
    const auto factor = gramsOfOne(weight.unit);
    if (!factor)
        return {};
    const std::string digits = product(std::to_string(weight.digits), factor->digits);
    const int exponent = weight.exponent + factor->exponent;
    const int size = static_cast<int>(digits.size()) + exponent;
    if (size > 15 || size < -9)
        return {};
    constexpr std::uint64_t pound = 45359237;
    StatedTexts texts;
    texts.pounds = sevenDigits(digits, exponent + 5, pound);
    texts.kilograms = sevenDigits(digits, exponent - 3, 1);
    texts.grams = sevenDigits(digits, exponent, 1);
    texts.poundsUp = upToWhole(digits, exponent + 5, pound);
    texts.kilogramsUp = upToWhole(digits, exponent - 3, 1);
    const std::string ounces = upToWhole(product(digits, "16"), exponent + 5, pound);
    texts.wholePounds = divided(ounces, 16).quotient;
    texts.remainingOunces = std::to_string(std::stoull(ounces) % 16);
    return texts;
}

} // namespace rules
