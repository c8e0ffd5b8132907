// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "lcd/DigitLayout.h"
#include "lcd/PanelContents.h"

#include <QLatin1String>
#include <QObject>
#include <QTimer>
#include <array>

class HIDManager;
class ImageView;
class ScaleSession;

namespace Ui {
class MainWindow;
}

/// The display: applies what the layout rules decide to the panel's views.
class Panel : public QObject
{
    Q_OBJECT

public:
    /// All must outlive the panel.
    Panel(const Ui::MainWindow &form, const HIDManager &link, const ScaleSession &session,
          QObject *parent);

    void Draw5Digit(qint64 nValue);
    void Draw5DigitOverload();
    void shownegativeSign(bool negative);
    /// Blanks everything, the export label's text with it.
    void clearAll();
    void displayforLBOZsimple();
    /// @param name a short name of segment::; others do nothing
    void DrawIcon(QLatin1String name, bool show);
    /// @param unit one of displaycode::; others leave the panel as it is
    void DisplayUnit(int unit);
    /// Exactly this, and nothing of what was shown before.
    void show(const PanelContents &contents);

    bool isLit(DigitView view) const { return cell(view).lit; }
    /// Keeps what the view holds.
    void setLit(DigitView view, bool lit);

    /// At this moment, also between the steps of a reading.
    PanelContents contents() const;

    /// Why what is shown may not be so now. It is dimmed then.
    enum class Doubt { None, Silence, Unconfirmed };
    void setDoubt(Doubt doubt);

    /// Tells screen readers what the panel shows, once this turn of the event loop is over.
    void announceReading();
    /// What they were told last.
    const PanelContents &announced() const { return m_announced; }

signals:
    void readingAnnounced();

private:
    /// What a view holds stays while it is dark.
    struct Cell
    {
        ImageView *view = nullptr;
        bool lit = false;
        PanelContents::Digit digit;
    };

    struct FixedSegment
    {
        const char *name = nullptr;
        ImageView *view = nullptr;
        bool *lit = nullptr; ///< null for those that tell nothing of the reading
    };

    const Cell &cell(DigitView view) const { return m_cells.at(static_cast<std::size_t>(view)); }
    Cell &cell(DigitView view) { return m_cells.at(static_cast<std::size_t>(view)); }
    PanelContents::Digit litDigit(DigitView view) const;
    DigitContext digitContext() const;
    void perform(const DigitStep &step);
    void showMinus(bool shown);
    void showOverload();
    /// @param number whose picture that is; for many there is none, and the view is empty
    void setDigit(DigitView view, const QString &picture, double number);
    void announceNow();

    const Ui::MainWindow &m_form;
    const HIDManager &m_link;
    const ScaleSession &m_session;
    std::array<Cell, 7> m_cells; ///< in the order of DigitView
    PanelContents m_fixed;       ///< what the segments show that are no digits
    std::array<FixedSegment, 13> m_segments;
    PanelContents m_announced;
    Doubt m_doubt = Doubt::None;
    QTimer m_announcement;
};
