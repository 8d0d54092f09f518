#include "parameterpanel.h"

#include "studiotext.h"

#include "dataservice/dataservice.h"
#include "host/parameterliteral.h"
#include "host/slotvalues.h"
#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/namemap.h"
#include "tessaly/uiservice.h"
#include "tessaly/variant.h"
#include "veldra/records/paraminfo.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

constexpr int ReferenceRole = Qt::UserRole;

QString controlName(const char *kind, const QString &reference)
{
    return QLatin1String(kind) + reference;
}

} // namespace

ParameterPanel::ParameterPanel(std::shared_ptr<const dataservice::DataService> service, QWidget *parent)
    : QWidget(parent), m_lists(service), m_service(std::move(service))
{
    setObjectName(QStringLiteral("ParameterPanel"));
    auto *layout = new QVBoxLayout(this);
    auto *form = new QFormLayout;
    m_sources = new QComboBox;
    m_sources->setObjectName(QStringLiteral("DataSourceChoice"));
    m_sources->setAccessibleName(studioText(StudioText::DataSourceLabel));
    auto *label = new QLabel(studioText(StudioText::DataSourceLabel));
    label->setBuddy(m_sources);
    form->addRow(label, m_sources);
    layout->addLayout(form);
    m_rows = new QWidget;
    m_rowsLayout = new QVBoxLayout(m_rows);
    m_rowsLayout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_rows);
    fillSources();
    connect(m_sources, &QComboBox::activated, this, [this](int index) {
        Q_EMIT sourceChosen(m_sources->itemData(index).toString());
    });
}

void ParameterPanel::fillSources()
{
    m_sources->clear();
    m_sources->addItem(studioText(StudioText::ComponentsOwnSource), QString());
    for (const QString &provider : dataservice::DataSourceCatalog::providers()) {
        for (const QString &name : m_service->dataSources().names(provider))
            m_sources->addItem(QStringLiteral("%1 (%2)").arg(name, provider), name);
    }
}

host::ParameterChoices ParameterPanel::choices() const
{
    return host::ParameterChoices(*m_host, *m_settings, const_cast<host::LiveLists *>(&m_lists), *m_source);
}

void ParameterPanel::unbind()
{
    for (Row &row : m_rowList)
        delete row.list->parentWidget();
    m_rowList.clear();
    m_host = nullptr;
    m_settings = nullptr;
    m_source = nullptr;
}

void ParameterPanel::bind(tessaly::ModelHost &host, const host::HostSettings &settings, const host::SourceChoice &source)
{
    unbind();
    m_host = &host;
    m_settings = &settings;
    m_source = &source;
    m_sources->setCurrentIndex(std::max(0, m_sources->findData(source.name())));
    const auto definition = host::definitionOf(host);
    for (const host::ParameterSetting &setting : settings.parameters) {
        if (!setting.list.isSet() && !setting.multiple)
            continue;
        const auto parameter = definition && definition->parameters()
                ? definition->parameters()->object<veldra::ParamInfo>(setting.reference) : nullptr;
        const QString title = parameter && !parameter->title().isEmpty() ? parameter->title() : setting.reference;
        auto *box = new QWidget;
        auto *boxLayout = new QVBoxLayout(box);
        boxLayout->setContentsMargins(0, 4, 0, 4);
        Row row;
        row.reference = setting.reference;
        auto *caption = new QLabel(setting.multiple ? studioText(StudioText::SeveralValuesCaption).arg(title) : title);
        caption->setObjectName(controlName("ParamCaption", setting.reference));
        row.search = new QLineEdit;
        row.search->setObjectName(controlName("ParamSearch", setting.reference));
        row.search->setPlaceholderText(studioText(StudioText::SearchPlaceholder));
        row.search->setAccessibleName(studioText(StudioText::SearchPlaceholder) + u' ' + title);
        row.search->setClearButtonEnabled(true);
        caption->setBuddy(row.search);
        row.list = new QListWidget;
        row.list->setObjectName(controlName("ParamList", setting.reference));
        row.list->setAccessibleName(studioText(StudioText::ValuesOf).arg(title));
        row.list->setMaximumHeight(row.list->fontMetrics().lineSpacing() * 8);
        row.note = new QLabel;
        row.note->setObjectName(controlName("ParamNote", setting.reference));
        row.note->setWordWrap(true);
        row.note->hide();
        boxLayout->addWidget(caption);
        boxLayout->addWidget(row.search);
        boxLayout->addWidget(row.list);
        boxLayout->addWidget(row.note);
        m_rowsLayout->addWidget(box);
        m_rowList.append(row);
    }
    for (qsizetype i = 0; i < m_rowList.size(); ++i) {
        const QString reference = m_rowList.at(i).reference;
        const auto rowOf = [this, reference]() -> Row * {
            for (Row &row : m_rowList) {
                if (row.reference == reference)
                    return &row;
            }
            return nullptr;
        };
        connect(m_rowList.at(i).search, &QLineEdit::textChanged, this, [this, rowOf] {
            if (Row *row = rowOf())
                fill(*row);
        });
        connect(m_rowList.at(i).list, &QListWidget::itemChanged, this, [this, rowOf](QListWidgetItem *item) {
            if (Row *row = rowOf())
                itemChanged(*row, item);
        });
        connect(m_rowList.at(i).list, &QListWidget::itemClicked, this, [this, rowOf](QListWidgetItem *item) {
            if (Row *row = rowOf())
                itemChanged(*row, item);
        });
    }
    reload();
}

void ParameterPanel::reload()
{
    if (!m_host)
        return;
    m_writing = true;
    try {
        host::ParameterChoices all = choices();
        all.applyDefaults();
        m_notes = all.settle();
    } catch (const tessaly::Error &error) {
        m_notes = { error.message() };
    }
    m_writing = false;
    m_values = parameterValues();
    for (Row &row : m_rowList)
        fill(row);
    Q_EMIT notesChanged(m_notes);
}

QHash<QString, QString> ParameterPanel::parameterValues() const
{
    QHash<QString, QString> values;
    const auto map = m_host ? host::parameterValuesOf(*m_host) : nullptr;
    for (int i = 0; map && i < map->count(); ++i)
        values.insert(map->key(i), tessaly::variant::toText(map->item(i)));
    return values;
}

void ParameterPanel::parametersChanged()
{
    if (!m_host || m_writing)
        return;
    const QHash<QString, QString> now = parameterValues();
    QStringList changed;
    for (auto it = now.cbegin(); it != now.cend(); ++it) {
        if (m_values.value(it.key()) != it.value())
            changed.append(it.key());
    }
    m_values = now;
    if (!changed.isEmpty())
        settle(changed);
}

void ParameterPanel::settle(const QStringList &changed)
{
    QStringList affected = changed;
    for (const QString &reference : changed)
        affected += m_settings->dependents(reference);
    m_writing = true;
    try {
        m_notes = choices().settle(changed);
    } catch (const tessaly::Error &error) {
        m_notes = { error.message() };
    }
    m_writing = false;
    m_values = parameterValues();
    for (Row &row : m_rowList) {
        if (affected.contains(row.reference))
            fill(row);
    }
    Q_EMIT notesChanged(m_notes);
}

void ParameterPanel::fill(Row &row)
{
    const host::ParameterChoices all = choices();
    const host::ListPage page = all.page(row.reference, row.search->text());
    const QStringList chosen = all.chosen(row.reference);
    const host::ParameterSetting *setting = m_settings->find(row.reference);
    const bool multiple = setting && setting->multiple;
    const QSignalBlocker blocker(row.list);
    row.list->clear();
    for (const host::ListEntry &entry : page.entries) {
        auto *item = new QListWidgetItem(entry.text, row.list);
        item->setData(ReferenceRole, entry.literal);
        item->setToolTip(entry.literal);
        const bool on = chosen.contains(entry.literal);
        if (multiple) {
            item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
            item->setCheckState(on ? Qt::Checked : Qt::Unchecked);
        } else if (on) {
            item->setSelected(true);
        }
    }
    if (page.more)
        new QListWidgetItem(studioText(StudioText::MoreValues), row.list);
    // Values chosen that this page does not show stay chosen; the note says how many.
    QString note = page.note;
    int hidden = 0;
    for (const QString &literal : chosen) {
        bool shown = false;
        for (const host::ListEntry &entry : page.entries)
            shown = shown || entry.literal == literal;
        hidden += shown ? 0 : 1;
    }
    if (multiple && hidden > 0)
        note += (note.isEmpty() ? QString() : QStringLiteral("\n")) + studioText(StudioText::ChosenNotShown).arg(hidden);
    row.note->setText(note);
    row.note->setVisible(!note.isEmpty());
}

void ParameterPanel::itemChanged(Row &row, QListWidgetItem *item)
{
    const QString literal = item->data(ReferenceRole).toString();
    if (literal.isEmpty())
        return; // the "more" line
    host::ParameterChoices all = choices();
    const host::ParameterSetting *setting = m_settings->find(row.reference);
    QStringList chosen = all.chosen(row.reference);
    if (setting && setting->multiple) {
        chosen.removeAll(literal);
        if (item->checkState() == Qt::Checked)
            chosen.append(literal);
    } else {
        chosen = { literal };
    }
    m_writing = true;
    try {
        all.setChosen(row.reference, chosen);
    } catch (const tessaly::Error &error) {
        tessaly::UiService::instance().message(error.message(), studioText(StudioText::ParametersTitle),
                                               tessaly::UiService::Buttons::Ok);
    }
    m_writing = false;
    parametersChanged();
}
