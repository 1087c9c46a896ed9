// SPDX-License-Identifier: GPL-3.0-or-later
#include "ButtonDress.h"

#include "ctlPicBtn.h"

namespace lantern {

void GiveStyle(ctlPicBtn& button, const ButtonStyle& style)
{
    button.SetForeColor(style.foreColor);
    button.SetOverColor(style.overColor);
    button.SetIsCheckBox(style.isCheckBox);
    button.SetMousePointer(style.mousePointer);
}

void GiveFace(ctlPicBtn& button, ButtonFace face)
{
    button.SetPicture(ButtonPicture(face, FaceState::Normal));
    button.SetPictureDown(ButtonPicture(face, FaceState::Down));
    button.SetPictureOver(ButtonPicture(face, FaceState::Over));
    button.SetPictureDisabled(ButtonPicture(face, FaceState::Disabled));
}

} // namespace lantern
