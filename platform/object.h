// The root of classes that can be stored in an archive.
#pragma once

class CArchive;

/// Base of the serialisable classes: arrays, outlines.
class CObject {
public:
    virtual ~CObject() = default;
    virtual void Serialize(CArchive&) {}
};
