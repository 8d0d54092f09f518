#include "parametersettingsdialog.h"

#include "studiotext.h"

#include "tessaly/namemap.h"
#include "veldra/records/paraminfo.h"
#include "veldra/records/sqlinfo.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QSpinBox>

ParameterSettingsDialog::ParameterSettingsDialog(const veldra::SQLInfo &definition, const host::HostSettings &settings,
                                                 std::function<bool(const host::HostSettings &)> accept, QWidget *parent)
    : QDialog(parent), m_settings(settings), m_accept(std::move(accept))
{
    setObjectName(QStringLiteral("ParameterSettingsDialog"));
    setWindowTitle(studioText(StudioText::ParametersTitle));
    auto *form = new QFormLayout(this);
    const auto field = [&](auto *widget, const char *name, StudioText caption) {
        widget->setObjectName(QLatin1String(name));
        form->addRow(studioText(caption), widget);
        return widget;
    };
    m_parameter = field(new QComboBox, "SettingsParameter", StudioText::SettingsParameter);
    m_multiple = field(new QCheckBox, "SettingsMultiple", StudioText::SettingsMultiple);
    m_default = field(new QLineEdit, "SettingsDefault", StudioText::SettingsDefault);
    m_default->setPlaceholderText(QStringLiteral("today-30d, start-of-month, start-of-year-1y"));
    m_table = field(new QLineEdit, "SettingsTable", StudioText::SettingsTable);
    m_value = field(new QLineEdit, "SettingsValue", StudioText::SettingsValue);
    m_display = field(new QLineEdit, "SettingsDisplay", StudioText::SettingsDisplay);
    m_filter = field(new QLineEdit, "SettingsFilter", StudioText::SettingsFilter);
    m_filter->setPlaceholderText(QStringLiteral("country = @@@Country"));
    m_order = field(new QLineEdit, "SettingsOrder", StudioText::SettingsOrder);
    m_descending = field(new QCheckBox, "SettingsDescending", StudioText::SettingsDescending);
    m_cache = field(new QSpinBox, "SettingsCache", StudioText::SettingsCache);
    m_cache->setRange(0, 86400);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    form->addRow(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    const auto &parameters = definition.parameters();
    for (int i = 0; parameters && i < parameters->count(); ++i) {
        const auto parameter = parameters->objectAt<veldra::ParamInfo>(i);
        const QString title = parameter && !parameter->title().isEmpty() ? parameter->title() : parameters->key(i);
        m_parameter->addItem(QStringLiteral("%1  (%2)").arg(parameters->key(i), title), parameters->key(i));
    }
    connect(m_parameter, &QComboBox::currentIndexChanged, this, [this](int index) {
        keep();
        show(m_parameter->itemData(index).toString());
    });
    if (m_parameter->count() > 0)
        show(m_parameter->itemData(0).toString());
}

void ParameterSettingsDialog::show(const QString &reference)
{
    m_shown = reference;
    const host::ParameterSetting *found = m_settings.find(reference);
    const host::ParameterSetting setting = found ? *found : host::ParameterSetting{ reference, false, {}, {} };
    m_multiple->setChecked(setting.multiple);
    m_default->setText(setting.relativeDefault);
    m_table->setText(setting.list.table);
    m_value->setText(setting.list.valueColumn);
    m_display->setText(setting.list.displayColumn);
    m_filter->setText(setting.list.filter);
    m_order->setText(setting.list.order);
    m_descending->setChecked(setting.list.descending);
    m_cache->setValue(setting.list.cacheSeconds);
}

// The form into the working copy; a parameter left with nothing set has no setting.
void ParameterSettingsDialog::keep()
{
    if (m_shown.isEmpty())
        return;
    host::ParameterSetting setting{ m_shown, m_multiple->isChecked(), m_default->text().trimmed(), {} };
    if (!m_table->text().trimmed().isEmpty())
        setting.list = { m_table->text().trimmed(), m_value->text().trimmed(), m_display->text().trimmed(),
                         m_filter->text(), m_order->text().trimmed(), m_descending->isChecked(), m_cache->value() };
    m_settings.parameters.removeIf([&](const host::ParameterSetting &kept) { return kept.reference == m_shown; });
    if (!(setting == host::ParameterSetting{ m_shown, false, {}, {} }))
        m_settings.parameters.append(setting);
}

void ParameterSettingsDialog::done(int result)
{
    if (result == QDialog::Accepted) {
        keep();
        if (!m_accept(m_settings))
            return; // said why; the person corrects it or cancels
    }
    QDialog::done(result);
}
