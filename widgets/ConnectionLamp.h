// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QWidget>

/// A round lamp as high as the text beside it.
class ConnectionLamp : public QWidget
{
    Q_OBJECT

public:
    enum class Light { Out, Connected, Trouble };

    explicit ConnectionLamp(QWidget *parent = nullptr);

    void setLight(Light shown);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintExclamationMark(QPainter &painter) const;

    Light m_light = Light::Out;
};
