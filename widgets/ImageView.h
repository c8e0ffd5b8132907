// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QPixmap>
#include <QWidget>

/// One segment or symbol of the display: a picture that fills the view, known by its name.
///
/// Pictures are the resources ":/panel/NAME". What has been painted is kept at the size in which it
/// was painted, so that naming one again costs a look-up. A name without a picture leaves the view
/// empty.
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

    QSize sizeHint() const override;

    /// The picture at exactly `size` device pixels, made from the smallest variant that is not
    /// smaller; null when there is no such picture. Made anew by each call.
    static QPixmap picture(const QString &name, QSize size);
    /// Size at 1x; empty when there is no such picture.
    static QSize pictureSize(const QString &name);
    /// Fills `place`, given in the painter's logical pixels.
    static void paintPicture(QPainter &painter, const QString &name, const QRect &place);
    /// Of all names, and how they were painted. To be called when the views' sizes change.
    static void forgetPictures();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_imageName;
    QString m_unlitImageName;
};
