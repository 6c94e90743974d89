// TrayWindow: the window in which Qt's tray icon is embedded, where there is one. One
// implementation for each system. Main thread.
#pragma once

#include <QColor>
#include <QObject>
#include <QTimer>

namespace bonkora {

class TrayWindow final : public QObject {
    Q_OBJECT

  public:
    TrayWindow();

    // Asks the tray for room of that width, in logical pixels, where it is not given yet.
    void setWidth(int width);
    // What reads well on the tray as it looks now; black where the system colours the icon itself.
    QColor textColor() const;

  signals:
    // A tray has taken the icon in, or laid it out anew, and has had the time to paint itself.
    void embedded();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QTimer settled;
};

}  // namespace bonkora
