// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QStringList>
#include <array>

/// What the six options are expected to be after any clicks: a second statement of their rules,
/// which shares nothing with the program.
struct OptionModel
{
    enum Option { OnTop, RoundTo, Clipboard, Usps, Ups, Fedex };
    static constexpr int optionCount = 6;
    using Flags = std::array<bool, optionCount>;

    Flags effective{}; ///< what the option does
    Flags boxes{};     ///< what the option box shows
    Flags marks{};     ///< what the menu shows
    QString label;     ///< the option that was switched on last
    bool scalePresent = false;
    int refusals = 0;
    int boxClicks = 0;

    static int tag(int option) { return 100 * (option + 1); }

    /// Tags of the boxes that are on: what every click on a box saves.
    QStringList saved() const
    {
        QStringList tags;
        for (int option = 0; option < optionCount; ++option) {
            if (boxes.at(std::size_t(option)))
                tags.append(QString::number(tag(option)));
        }
        return tags;
    }

    void clickBox(int option)
    {
        bool &box = boxes.at(std::size_t(option));
        box = !box;
        effective.at(std::size_t(option)) = box;
        if (option >= Usps)
            boxes[Clipboard] = false;
        if (option == Clipboard && box)
            boxes[Usps] = boxes[Ups] = boxes[Fedex] = false;
        static const std::array names{"On Top", "Round to", "Clipboard", "USPS", "UPS"};
        if (box && option != Fedex)
            label = QString::fromLatin1(names.at(std::size_t(option)));
        ++boxClicks;
    }

    void clickMenu(int option)
    {
        if (!scalePresent) {
            ++refusals;
            return;
        }
        bool &mark = marks.at(std::size_t(option));
        mark = !mark;
        effective.at(std::size_t(option)) = mark;
        if (!mark)
            return;
        if (option == Clipboard)
            marks[Usps] = marks[Ups] = marks[Fedex] = false;
        if (option >= Usps)
            marks[Clipboard] = false;
        static const std::array names{"On Top", "Round to", "", "USPS", "UPS", "FEDX"};
        if (option != Clipboard)
            label = QString::fromLatin1(names.at(std::size_t(option)));
    }
};
