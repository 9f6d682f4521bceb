#pragma once
// Toolbar images (300-399).
