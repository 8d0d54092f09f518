#pragma once

#include "host/parametersettings.h"

#include <QDialog>

#include <functional>

class QCheckBox;
class QComboBox;
class QLineEdit;
class QSpinBox;

namespace veldra {
class SQLInfo;
}

// Query > Parameter Settings: per parameter, several values, a relative default, and a list read
// from the component's data source (table, value and shown column, filter, order, cache time).
// OK hands the settings to accept(), which checks them (a cycle of lists is refused, naming the
// parameters) and says why it refuses; the dialog stays open then.
class ParameterSettingsDialog final : public QDialog
{
    Q_OBJECT

public:
    ParameterSettingsDialog(const veldra::SQLInfo &definition, const host::HostSettings &settings,
                            std::function<bool(const host::HostSettings &)> accept, QWidget *parent = nullptr);

    void done(int result) override;

private:
    void show(const QString &reference);
    void keep();

    host::HostSettings m_settings;
    std::function<bool(const host::HostSettings &)> m_accept;
    QString m_shown;
    QComboBox *m_parameter = nullptr;
    QCheckBox *m_multiple = nullptr;
    QLineEdit *m_default = nullptr;
    QLineEdit *m_table = nullptr;
    QLineEdit *m_value = nullptr;
    QLineEdit *m_display = nullptr;
    QLineEdit *m_filter = nullptr;
    QLineEdit *m_order = nullptr;
    QCheckBox *m_descending = nullptr;
    QSpinBox *m_cache = nullptr;
};
