// What a host adds to a model file.
#pragma once
#include <cstdio>
#include <memory>

#include "model/goujian.h"

class CGridDataBase;

/// The host's side of saving and opening. A host with components of its own beside nodes, lines and plates makes them
/// known here; their blocks go through WriteBinary and ReadBinary, each with a length about it.
class ModelHost {
public:
    virtual ~ModelHost() = default;

    /// An empty component for ReadBinary, or null for a type byte that isn't the host's.
    virtual std::unique_ptr<CGouJianEx> Make(unsigned char /*type*/) const { return nullptr; }
    /// Once net and plates stand: is everything there on which a component read depends? If not it is left out.
    virtual bool CanStand(const CGouJianEx& /*component*/, CGridDataBase& /*db*/) const { return true; }

    // What else the host keeps with a model. Reading is called last, for a new model too when a file has no such
    // section; false when the bytes make no sense.
    virtual void WriteData(CGridDataBase& /*db*/, std::FILE* /*out*/) const {}
    virtual bool ReadData(CGridDataBase& /*db*/, std::FILE* /*in*/) const { return true; }
};
