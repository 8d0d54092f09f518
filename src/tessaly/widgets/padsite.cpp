#include "tessaly/widgets/padsite.h"

#include "tessaly/componentslots.h"
#include "tessaly/error.h"
#include "tessaly/modelhost.h"
#include "tessaly/widgets/childpadregistry.h"
#include "tessaly/widgets/childpadwidget.h"
#include "tessaly/zetprimitivemodel.h"
#include "tessaly/zetprimitivepad.h"

#include <QScopeGuard>
#include <QVBoxLayout>

namespace tessaly {

namespace {
// A pad whose reports keep triggering each other would otherwise never return.
constexpr int maximumEchoDepth = 32;
} // namespace

std::shared_ptr<PadSite> PadSite::create(std::shared_ptr<zetPrimitiveModel> model, QWidget *face, zetPadSite *parent)
{
    return std::shared_ptr<PadSite>(new PadSite(std::move(model), face, parent));
}

PadSite::PadSite(std::shared_ptr<zetPrimitiveModel> model, QWidget *face, zetPadSite *parent)
    : m_model(std::move(model)),
      m_host(std::make_shared<ModelHost>(m_model.get())),
      m_face(face),
      m_parent(parent),
      m_registry(&ChildPadRegistry::instance())
{
    m_host->setSlotListener([this](const QString &name) { modelSlotChanged(name); });
    // A face destroyed by its host takes the children with it.
    if (face)
        connect(face, &QObject::destroyed, this, [this] { m_children.clear(); });
}

PadSite::~PadSite()
{
    m_host->setSlotListener({});
    removeChildPads();
}

void PadSite::initialize(zetPrimitivePad *pad, int kind)
{
    m_model->zetPrimitiveModel_SetModel(m_host);
    m_model->zetPrimitiveModel_onInitialize(kind);
    m_pad = pad;
    m_componentSlots.reset();
    if (m_pad) {
        m_pad->zetPrimitivePad_setPad(shared_from_this());
        m_pad->zetPrimitivePad_onInitialize(kind);
    }
}

void PadSite::cleanup()
{
    // Whatever the children do from here on (the focus leaving one as the wizard goes) writes no
    // slot: the pad and the model are being cleaned up.
    for (ChildPadWidget *child : std::as_const(m_children))
        child->setSlotWriter({});
    if (m_pad) {
        m_pad->zetPrimitivePad_onCleanup();
        m_pad->zetPrimitivePad_setPad(nullptr);
        m_pad = nullptr;
    }
    m_componentSlots.reset();
    m_model->zetPrimitiveModel_onCleanup();
    removeChildPads();
}

void PadSite::setPadSlotValue(const QString &name, const QVariant &value)
{
    if (m_pad)
        m_pad->zetPrimitivePad_onSetSlotValue(name, value);
}

bool PadSite::readModelSlot(const QString &name, QVariant *value)
{
    *value = m_model ? m_host->slotValue(name) : QVariant();
    return value->isValid();
}

void PadSite::declarePadSlot(const QString &name, const QString &)
{
    if (!m_padSlots.contains(name))
        m_padSlots.append(name);
}

void PadSite::reportSlotChanged(const QString &name)
{
    m_padReports.append(name);
    if (!m_pad)
        return;
    if (m_echoDepth >= maximumEchoDepth)
        throw Error(ErrorNumber::Fail, QStringLiteral("pad slot %1: change reports do not settle").arg(name));
    ++m_echoDepth;
    const auto leave = qScopeGuard([this] { --m_echoDepth; });
    const QVariant value = m_pad->zetPrimitivePad_onGetSlotValue(name);
    for (ChildPadWidget *child : std::as_const(m_children)) {
        if (child->follows(SlotOwner::Pad, name))
            child->followSlot(value);
    }
    m_pad->zetPrimitivePad_onSetSlotValue(name, value);
}

void PadSite::reportChangeCode(int code)
{
    m_padReports.append(u'#' + QString::number(code));
}

void PadSite::watchModelSlot(const QString &name, bool *accepted)
{
    if (!m_watched.contains(name))
        m_watched.append(name);
    *accepted = true;
}

void PadSite::modelSlotChanged(const QString &name)
{
    if (!m_children.isEmpty()) {
        const QVariant value = m_host->slotValue(name);
        for (ChildPadWidget *child : std::as_const(m_children)) {
            if (child->follows(SlotOwner::Model, name))
                child->followSlot(value);
        }
    }
    if (m_watched.contains(name))
        Q_EMIT watchedSlotChanged(name);
}

void PadSite::refreshChildPads(const QString &modelSlot)
{
    const QVariant value = m_host->slotValue(modelSlot);
    for (ChildPadWidget *child : std::as_const(m_children)) {
        if (child->follows(SlotOwner::Model, modelSlot))
            child->followSlot(value);
    }
}

void PadSite::writeSlot(SlotOwner owner, const QString &slot, const QVariant &value)
{
    if (owner == SlotOwner::Model)
        m_host->setSlotValue(slot, value);
    else
        setPadSlotValue(slot, value);
}

QVBoxLayout *PadSite::faceLayout()
{
    auto *layout = qobject_cast<QVBoxLayout *>(m_face->layout());
    if (!layout) {
        layout = new QVBoxLayout(m_face);
        layout->setSpacing(2);
        layout->addStretch();
    }
    return layout;
}

zetChildPad *PadSite::createChildPad(const QString &progId)
{
    if (!m_face)
        return nullptr;
    ChildPadWidget *child = m_registry->create(progId, m_face);
    if (!child)
        return nullptr;
    child->setSlotWriter([this](SlotOwner owner, const QString &slot, const QVariant &value) {
        writeSlot(owner, slot, value);
    });
    QVBoxLayout *layout = faceLayout();
    layout->insertWidget(layout->count() - 1, child, 0, Qt::AlignLeft);
    child->show();
    m_children.append(child);
    return child;
}

void PadSite::removeChildPads()
{
    const QList<ChildPadWidget *> children = std::exchange(m_children, {});
    if (!m_face)
        return; // the children went with the face
    for (ChildPadWidget *child : children) {
        child->setSlotWriter({});
        delete child;
    }
}

std::shared_ptr<zetPrimitiveModel> PadSite::componentModel()
{
    if (!m_componentSlots)
        m_componentSlots = std::make_shared<ComponentSlots>(m_model.get(), m_host.get(), m_pad, &m_padSlots);
    return m_componentSlots;
}

} // namespace tessaly
