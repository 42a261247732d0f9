// CStoreWatcher: somebody who keeps up with what changes in a store.
#pragma once

class CGouJianEx;

/// Told of each change to the components of a container, as it happens. It must do nothing to the store
/// meanwhile.
class CStoreWatcher {
public:
    virtual ~CStoreWatcher() = default;
    /// The component went in or out, by an edit, an undo or a redo; or it stands there and its number, its
    /// text heights or whether it is hidden have changed, which no log knows of.
    virtual void OnChanged(const CGouJianEx& component) = 0;
    /// What was told so far is complete: another step may begin, or an undo or redo is about to.
    virtual void OnStepEnd() = 0;
    /// The store is being emptied, its log too; components are freed after this, untold.
    virtual void OnEmptied() = 0;
    /// The store itself goes; nothing is told after this.
    virtual void OnGone() = 0;
};
