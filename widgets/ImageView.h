// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <QWidget>

class PictureCache;

/// One segment or symbol of the display: a picture that fills the view, known by its name.
///
/// Pictures are the resources ":/panel/NAME". A name without a picture leaves the view empty.
class ImageView : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(QString imageName READ imageName WRITE setImage)
    Q_PROPERTY(QString unlitImageName READ unlitImageName WRITE setUnlitImage)

public:
    explicit ImageView(QWidget *parent = nullptr);

    void setImage(const QString &name);
    QString imageName() const { return m_imageName; }
    bool isEmpty() const;

    /// What the glass faintly shows at this place whether or not the view is lit; may be empty.
    void setUnlitImage(const QString &name) { m_unlitImageName = name; }
    QString unlitImageName() const { return m_unlitImageName; }

    /// From 0, invisible, to 1.
    void setOpacity(qreal opacity);

    /// Where painted pictures are kept; it must outlive the view's last painting. Without one, each
    /// painting makes its picture anew.
    void setPictures(PictureCache *pictures) { m_pictures = pictures; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_imageName;
    QString m_unlitImageName;
    qreal m_opacity = 1;
    PictureCache *m_pictures = nullptr;
};
