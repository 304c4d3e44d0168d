#pragma once
// Imports pictures, as they are or scaled to a size. User-interface thread.
#include "media/dlgMediaImport.h"
#include <cstdint>
#include <memory>

class chDiskWork;

class dlgImageImport : public dlgMediaImport
{
    Q_OBJECT
public:
    // width, height: in pixels; below 1: as they are.
    dlgImageImport(const char* type, int width, int height, QWidget* parent);
    dlgImageImport(const char* type, QWidget* parent);
    ~dlgImageImport() override;

    // A picture that the phone shows. path: device path. Any thread; reads the file.
    static bool IsImageOK(const char* path);
    bool ImportFile(const chString& source, const chString& target) const override;

protected:
    void ShowSoftKey() override;

private:
    void LookAtCurrent();
    void OnLooked();

    int32_t m_nTargetWidth;
    int32_t m_nTargetHeight;
    std::unique_ptr<chDiskWork> m_look; // at m_strLooked
    chString m_strLooked;
};
