// What a host adds to a model file.
#pragma once
#include <cstdio>
#include <memory>
#include <string>

#include "model/goujian.h"

class CGridDataBase;

/// The host's side of saving and opening. A host with components of its own beside nodes, lines and plates makes them
/// known here; their blocks have each a length about it.
class ModelHost {
public:
    virtual ~ModelHost() = default;

    /// An empty component for ReadBinary, or null for a type byte that isn't the host's.
    virtual std::unique_ptr<CGouJianEx> Make(unsigned char /*type*/) const { return nullptr; }
    // The block of a component; 0 when it could not be written or makes no sense.
    virtual int Write(CGouJianEx& component, std::FILE* out) const { return component.WriteBinary(out); }
    virtual int Read(CGouJianEx& component, std::FILE* in) const { return component.ReadBinary(in); }
    /// What people call it in a message, and what it hangs on.
    virtual std::string Describe(const CGouJianEx& component) const {
        return "component " + std::to_string(component.get_m_dwGouJianID());
    }
    /// Once net and plates stand: is everything there on which a component read depends? If not it is left out.
    virtual bool CanStand(const CGouJianEx& /*component*/, CGridDataBase& /*db*/) const { return true; }

    // What else the host keeps with a model. Reading is called last, for a new model too when a file has no such
    // section; false when the bytes make no sense.
    virtual void WriteData(CGridDataBase& /*db*/, std::FILE* /*out*/) const {}
    virtual bool ReadData(CGridDataBase& /*db*/, std::FILE* /*in*/) const { return true; }
};
