#include "app/window/PanelWindow.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <chrono>

#include "app/desktop/WindowSystem.h"
#include "ui/drawing/Colors.h"
#include "ui/drawing/Shapes.h"

namespace bonkora {

namespace {

using namespace std::chrono_literals;

constexpr int cornerRadius = 10;
// Some window managers (i3) make room for a title bar before they learn that there is to be none.
constexpr int placeCorrections = 2;
// Window managers hold the pointer for a moment around activation, and drop a grab made then.
constexpr std::chrono::milliseconds grabTimes[] = {0ms, 60ms, 250ms};

Qt::WindowFlags flagsFor(PanelWindow::Style style) {
    return style == PanelWindow::Style::plain
               ? Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint |
                     Qt::CustomizeWindowHint
               : Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                     Qt::NoDropShadowWindowHint;
}

// Window managers minimise a dialog together with the window it belongs to.
void restore(QWidget& window) {
    if (window.isMinimized()) {
        window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
    }
}

}  // namespace

PanelWindow::PanelWindow(std::unique_ptr<QWidget> theContent, Style style)
    : QWidget(nullptr, flagsFor(style)),
      panelStyle(style),
      isBlended(windowSystem::isCompositing()),
      content(theContent.release()) {
    setWindowTitle("Bonkora");
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(content);
    if (panelStyle == Style::dropDown) {
        setAttribute(Qt::WA_TranslucentBackground);
        windowSystem::keepOutOfTaskbars(*this);
        if (layerShell::isOffered()) {
            layer = std::make_unique<LayerSurface>(*this);
            connect(layer.get(), &LayerSurface::dismissed, this, &QWidget::close,
                    Qt::QueuedConnection);
            connect(layer.get(), &LayerSurface::pressedOutside, this, &PanelWindow::pressedOutside);
        }
    }
}

void PanelWindow::open(const QRect& place) {
    moveTo(place);
    show();
    raiseToFront();
    if (panelStyle == Style::dropDown && windowSystem::canGrabPointer()) {
        windowHandle()->installEventFilter(this);
        grabPointer();
        spreadShields();
    }
}

void PanelWindow::moveTo(const QRect& place) {
    setFixedSize(place.size());
    wantedPosition = place.topLeft();
    correctionsLeft = panelStyle == Style::dropDown && !layer ? placeCorrections : 0;
    move(wantedPosition);
    if (layer) {
        QScreen* const wanted = QGuiApplication::screenAt(place.center());
        layer->place(place, wanted != nullptr ? *wanted : *screen());
    }
    if (!shields.empty()) {
        spreadShields();
    }
}

void PanelWindow::raiseToFront() {
    restore(*this);
    QWidget* front = QApplication::activeModalWidget();
    front = front != nullptr ? front : this;
    restore(*front);
    front->raise();
    front->activateWindow();
}

bool PanelWindow::isOccupied() {
    return QApplication::activeModalWidget() != nullptr ||
           QApplication::activePopupWidget() != nullptr;
}

void PanelWindow::grabPointer() {
    for (const auto time : grabTimes) {
        QTimer::singleShot(time, this, [this] {
            if (isVisible() && !isOccupied()) {
                windowHandle()->setMouseGrabEnabled(true);
            }
        });
    }
}

void PanelWindow::spreadShields() {
    shields.clear();
    if (windowSystem::isGrabWhole()) {
        return;
    }
    for (const QScreen* screen : QGuiApplication::screens()) {
        shields.push_back(std::make_unique<PressShield>(*screen, QRect(wantedPosition, size())));
        connect(shields.back().get(), &PressShield::pressed, this, &PanelWindow::pressedOutside);
        shields.back()->show();
    }
}

bool PanelWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && !isOccupied() &&
        !rect().contains(static_cast<QMouseEvent*>(event)->position().toPoint())) {
        emit pressedOutside();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool PanelWindow::event(QEvent* event) {
    if (panelStyle == Style::dropDown) {
        followActivation(event->type());
    }
    return QWidget::event(event);
}

void PanelWindow::followActivation(QEvent::Type type) {
    switch (type) {
        case QEvent::WindowActivate:
            if (windowSystem::canGrabPointer()) {
                grabPointer();
            }
            break;
        case QEvent::WindowDeactivate:
            emit deactivated();
            break;
        case QEvent::WindowBlocked:
            if (layer) {
                layer->setInFront(false);
            } else if (windowSystem::canGrabPointer()) {
                windowHandle()->setMouseGrabEnabled(false);
                shields.clear();
            }
            break;
        case QEvent::WindowUnblocked:
            if (layer) {
                layer->setInFront(true);
            } else if (windowSystem::canGrabPointer()) {
                spreadShields();
            }
            emit dialogClosed();
            break;
        default:
            break;
    }
}

void PanelWindow::moveEvent(QMoveEvent* event) {
    QWidget::moveEvent(event);
    if (isVisible() && pos() != wantedPosition && correctionsLeft > 0) {
        --correctionsLeft;
        // Not while the window system is telling of the place.
        QTimer::singleShot(0, this, [this] { move(wantedPosition); });
    }
}

void PanelWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && panelStyle == Style::dropDown) {
        emit escapePressed();
    } else {
        QWidget::keyPressEvent(event);
    }
}

void PanelWindow::closeEvent(QCloseEvent* event) {
    if (windowSystem::canGrabPointer()) {
        windowHandle()->setMouseGrabEnabled(false);
    }
    shields.clear();
    QWidget::closeEvent(event);
    emit closed();
}

void PanelWindow::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QColor color = content->palette().color(colorRole::window);
    if (panelStyle == Style::plain) {
        painter.fillRect(rect(), color);
        return;
    }
    const QColor hairline = content->palette().color(colorRole::hairline);
    if (!isBlended) {
        // A window's shape has hard steps of whole logical pixels where nothing blends it into what
        // lies behind. Straight corners are clean at every scale.
        painter.fillRect(rect(), composited(hairline, color));
        painter.fillRect(rect().adjusted(1, 1, -1, -1), color);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shapes::continuousRectangle(rect(), cornerRadius), color);
    const QRectF edge = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    painter.strokePath(shapes::continuousRectangle(edge, cornerRadius), hairline);
}

}  // namespace bonkora
