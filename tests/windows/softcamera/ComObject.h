#pragma once

#include <atomic>
#include <unknwn.h>

/// The number of existing COM objects of the software camera.
class LiveObjects
{
public:
    [[nodiscard]] static int count() { return counter(); }

protected:
    LiveObjects() { ++counter(); }
    ~LiveObjects() { --counter(); }

private:
    static std::atomic<int>& counter()
    {
        static std::atomic<int> alive{0};
        return alive;
    }
};

/// A COM object with these interfaces; the creator has its first reference.
template <typename... Interfaces>
class ComObject : public Interfaces..., private LiveObjects
{
public:
    ComObject() = default;
    virtual ~ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        if (!object)
            return E_POINTER;
        *object = find(iid);
        if (!*object)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        if (left == 0)
            delete this;
        return left;
    }

protected:
    /// The object as @p iid, or null.
    virtual void* find(REFIID iid)
    {
        void* found = nullptr;
        (offer<Interfaces>(iid, found), ...);
        return found;
    }

    /// Sets @p found to this object as @p Interface when @p iid names it or the base of all.
    template <typename Interface>
    void offer(REFIID iid, void*& found)
    {
        if (!found && (iid == __uuidof(Interface) || iid == __uuidof(IUnknown)))
            found = static_cast<Interface*>(this);
    }

private:
    std::atomic<ULONG> m_references{1};
};
