#pragma once
// Loads a Designer panel (.ui). The library's components are made through the run-time
// catalogue, so a panel loads the same whether or not the Designer plugin is installed;
// plugin paths are cleared so that an installed plugin of another build of the library
// can never be mixed in. Standard Qt widgets come from QUiLoader as usual; a custom class
// the catalogue does not know falls back to the base class the .ui file names for it.
#include <QString>
#include <QUiLoader>

namespace kx::panel {

class PanelLoader : public QUiLoader {
    Q_OBJECT
  public:
    explicit PanelLoader(QObject* parent = nullptr);

    QWidget* createWidget(const QString& className, QWidget* parent = nullptr,
                          const QString& name = QString()) override;
    // The panel of the file (owned by the caller), or null with a message naming the file.
    QWidget* LoadFile(const QString& path, QString* error);
};

}  // namespace kx::panel
