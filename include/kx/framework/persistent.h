#pragma once
// TKxPersistent: the base of every settings object. It knows nothing of its owner; the
// owner installs one change handler, so the same settings class serves any control and
// can be used stand-alone (then every setter only stores).
#include <QObject>
#include <functional>
#include <stdexcept>

namespace kx {

using TNotifyEvent = std::function<void(QObject* sender)>;

// The library's one exception: an Assign between unrelated settings classes.
class EConvertError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

class TKxPersistent : public QObject {
    Q_OBJECT
  public:
    explicit TKxPersistent(QObject* parent = nullptr) : QObject(parent) {}

    void SetOnChange(TNotifyEvent handler) { onChange_ = std::move(handler); }
    const TNotifyEvent& OnChange() const { return onChange_; }

    // Calls the handler with this object as sender.
    virtual void Change();
    // Calls the handler with the given sender (a nested font or pen).
    virtual void ChangeObject(QObject* sender);

    // Copies this object into dest; classes copy only to their own kind, anything else
    // throws EConvertError.
    virtual void AssignTo(TKxPersistent* dest) const;
    // Copies source into this object (through source's AssignTo).
    void Assign(const TKxPersistent* source);

  protected:
    // Throws the conversion error for an unsupported copy.
    [[noreturn]] void assignError(const TKxPersistent* dest) const;

  private:
    TNotifyEvent onChange_;
};

}  // namespace kx
