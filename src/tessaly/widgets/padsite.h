#pragma once

#include "tessaly/widgets/tessalywidgets_export.h"
#include "tessaly/zetpadsite.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>

class QVBoxLayout;
class QWidget;

namespace tessaly {

class ChildPadRegistry;
class ChildPadWidget;
class ComponentSlots;
class ModelHost;
class zetPrimitivePad;

// Where a component sits in a desktop host: its model's host, its pad, the widget its child
// pads are placed on (top to bottom, in the order they were made) and the connections between
// the children and the slots. It echoes reported slots back as the framework does, so the
// component's re-entrancy guards meet real nested writes.
class TESSALYWIDGETS_EXPORT PadSite final : public QObject, public zetPadSite, public std::enable_shared_from_this<PadSite>
{
    Q_OBJECT

public:
    // The host owns face; parent is the site of the pad that holds this one.
    static std::shared_ptr<PadSite> create(std::shared_ptr<zetPrimitiveModel> model, QWidget *face,
                                           zetPadSite *parent = nullptr);
    ~PadSite() override;

    // Gives the model its site and the pad this one, and initialises both with the kind.
    void initialize(zetPrimitivePad *pad, int kind);
    // Cleans up pad and model, removes the children and lets the pad go.
    void cleanup();

    ModelHost &modelHost() { return *m_host; }
    zetPrimitivePad *pad() const { return m_pad; }
    QWidget *face() const { return m_face; }
    const QList<ChildPadWidget *> &children() const { return m_children; }

    // Tests give a site its own registry; by default it is the process's.
    void setRegistry(const ChildPadRegistry *registry) { m_registry = registry; }

    // The framework writing a slot of the pad.
    void setPadSlotValue(const QString &name, const QVariant &value);

    bool readModelSlot(const QString &name, QVariant *value) override;
    zetPadSite *parentPad() override { return m_parent; }
    void declarePadSlot(const QString &name, const QString &description) override;
    void reportSlotChanged(const QString &name) override;
    void reportChangeCode(int code) override;
    void watchModelSlot(const QString &name, bool *accepted) override;
    zetChildPad *createChildPad(const QString &progId) override;
    void removeChildPads() override;
    void refreshChildPads(const QString &modelSlot) override;
    std::shared_ptr<zetPrimitiveModel> componentModel() override;

Q_SIGNALS:
    // A slot the pad asked to watch was reported changed by the model.
    void watchedSlotChanged(const QString &name);

private:
    PadSite(std::shared_ptr<zetPrimitiveModel> model, QWidget *face, zetPadSite *parent);
    void modelSlotChanged(const QString &name);
    void writeSlot(SlotOwner owner, const QString &slot, const QVariant &value);
    QVBoxLayout *faceLayout();

    std::shared_ptr<zetPrimitiveModel> m_model;
    std::shared_ptr<ModelHost> m_host;
    std::shared_ptr<ComponentSlots> m_componentSlots;
    zetPrimitivePad *m_pad = nullptr;
    QPointer<QWidget> m_face;
    zetPadSite *m_parent;
    const ChildPadRegistry *m_registry;
    QStringList m_padSlots;
    QStringList m_watched;
    QList<ChildPadWidget *> m_children;
    int m_echoDepth = 0;
};

} // namespace tessaly
