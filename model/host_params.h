// The numbers that a host may hang on a component.
#pragma once
#include <algorithm>
#include <array>

/// Behaves as an array of 128 numbers that all hold one initial value, but allocates at the first write only:
/// held by value, these arrays would be 1.5 KB of every node and line. Indices are asserted by the caller.
template <class T>
class CHostParams {
public:
    static constexpr int kCount = 128;

    /// An element that allocates the array when it is assigned a value that differs.
    class Element {
    public:
        Element(CHostParams& owner, int i) : m_owner(owner), m_i(i) {}
        operator T() const { return m_owner.Get(m_i); }
        Element& operator=(T v) {
            m_owner.Set(m_i, v);
            return *this;
        }
        Element& operator=(const Element& other) { return *this = static_cast<T>(other); }
        Element& operator+=(T v) { return *this = static_cast<T>(*this) + v; }
        Element& operator-=(T v) { return *this = static_cast<T>(*this) - v; }

    private:
        CHostParams& m_owner;
        int m_i;
    };

    CHostParams() : m_data(Shared(T(0))) {}
    explicit CHostParams(T initial) : m_data(Shared(initial)) {}
    CHostParams(const CHostParams& other) : m_data(other.Copy()) {}
    CHostParams& operator=(const CHostParams& other) {
        if (this != &other) {
            const T* copy = other.Copy();
            Release();
            m_data = copy;
        }
        return *this;
    }
    ~CHostParams() { Release(); }

    T Get(int i) const { return m_data[i]; }
    void Set(int i, T v) {
        if (m_data[i] == v) return;
        if (IsShared()) m_data = Copy(/*always=*/true);
        const_cast<T*>(m_data)[i] = v;
    }
    T operator[](int i) const { return Get(i); }
    Element operator[](int i) { return Element(*this, i); }
    static int GetSize() { return kCount; }

private:
    // The two arrays that components start with. Nothing writes to them.
    static const T* Shared(T initial) {
        static const std::array<T, kCount> zeros = Filled(T(0)), minusOnes = Filled(T(-1));
        return initial == T(0) ? zeros.data() : minusOnes.data();
    }
    static std::array<T, kCount> Filled(T v) {
        std::array<T, kCount> a;
        a.fill(v);
        return a;
    }
    bool IsShared() const { return m_data == Shared(T(0)) || m_data == Shared(T(-1)); }
    const T* Copy(bool always = false) const {
        if (IsShared() && !always) return m_data;
        T* copy = new T[kCount];
        std::copy_n(m_data, kCount, copy);
        return copy;
    }
    void Release() {
        if (!IsShared()) delete[] m_data;
    }

    const T* m_data;  // one of the shared arrays, or owned
};
